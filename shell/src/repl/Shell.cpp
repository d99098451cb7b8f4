// Running files, code and the interactive session. The session uses
// libedit for line editing and keeps its history in ~/.sgsh_history; a
// statement that opens a block reads further lines until it is complete.
#include "sgsh/Shell.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>
#include <fstream>
#include <sstream>

#include <editline/readline.h>

#include <foundation/core/except/Error.h>
#include <foundation/core/except/IMsgIDException.h>
#include <foundation/core/except/WarningChannel.h>

#include "sgsh/Completion.h"
#include "sgsh/Output.h"
#include "sgsh/Parser.h"
#include "sgsh/ScriptError.h"

namespace sgsh {

using foundation::core::except::IMsgIDException;
using foundation::core::except::WarningChannel;

Shell::Shell() {
  // Warnings appear in the language's output, in order with the rest.
  WarningChannel::instance().setSink([](std::string_view line) { writeOutput(line); });
}

Shell::~Shell() { WarningChannel::instance().setSink({}); }

std::string Shell::errorReport(const std::exception& e) {
  const ErrorIdentity id = identify(e);
  std::string report = "Error: " + id.message;
  if (!id.identifier.empty()) report += " (" + id.identifier + ")";
  return report + "\n";
}

namespace {

extern "C" void onInterrupt(int) { Interpreter::requestInterrupt(); }

// While it lives, Ctrl-C interrupts the running command instead of ending
// the process.
class InterruptHandler {
 public:
  InterruptHandler() {
    struct sigaction sa {};
    sa.sa_handler = onInterrupt;
    sa.sa_flags = SA_RESTART;  // a Ctrl-C at the prompt leaves the line being read alone
    sigemptyset(&sa.sa_mask);
    sigaction(SIGINT, &sa, &previous_);
  }
  ~InterruptHandler() { sigaction(SIGINT, &previous_, nullptr); }
  InterruptHandler(const InterruptHandler&) = delete;
  InterruptHandler& operator=(const InterruptHandler&) = delete;

 private:
  struct sigaction previous_ {};
};

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

int Shell::runCode(std::string_view code) {
  try {
    Interpreter::clearInterrupt();  // a Ctrl-C typed at the prompt is not for this command
    interp_.run(code);
    return 0;
  } catch (const std::exception& e) {
    writeOutput(errorReport(e));
    return 1;
  }
}

int Shell::runFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    writeOutput("Error: cannot open " + path + "\n");
    return 1;
  }
  std::ostringstream text;
  text << in.rdbuf();
  InterruptHandler interrupts;
  std::string_view source = text.view();
  if (source.starts_with(kByteOrderMark)) source.remove_prefix(kByteOrderMark.size());
  return runCode(source);
}

namespace {

// True when the source stops in the middle of a statement or block, so the
// session should read another line. A function typed in a session ends
// with 'end'.
bool incomplete(const std::string& source) {
  try {
    return Parser::parse(source).openFunction;
  } catch (const IMsgIDException& e) {
    const auto& args = e.message().arguments();
    return e.identifier() == "VANTEL:sgsh:Syntax" && !args.empty() && args[0] == "end of input";
  } catch (const std::exception&) {
    return false;  // running it reports the error
  }
}

std::string historyPath() {
  const char* home = std::getenv("HOME");
  return home ? std::string(home) + "/.sgsh_history" : std::string();
}

// Tab completion through libedit: the interpreter of the running session
// and the words found for the current attempt.
const Interpreter* completingIn = nullptr;

char* nextCompletion(const char*, int state) {
  static std::vector<std::string> found;
  static std::size_t next = 0;
  if (state == 0) {
    const std::string line(rl_line_buffer ? rl_line_buffer : "");
    found = completingIn ? completions(*completingIn, line, static_cast<std::size_t>(rl_point)) : std::vector<std::string>{};
    next = 0;
  }
  return next < found.size() ? strdup(found[next++].c_str()) : nullptr;
}

char** completeWord(const char* text, int, int) {
  rl_attempted_completion_over = 1;  // no file names when nothing matches
  return rl_completion_matches(text, &nextCompletion);
}

// Word breaks without "." so that "h.Co" is one word.
char kWordBreaks[] = " \t\n\"'`@$><=;|&{(,+-*/\\^~:[]!)}";

}  // namespace

int Shell::repl() {
  const std::string history = historyPath();
  using_history();
  if (!history.empty()) read_history(history.c_str());
  completingIn = &interp_;
  rl_attempted_completion_function = &completeWord;
  rl_completer_word_break_characters = kWordBreaks;
  InterruptHandler interrupts;
  std::string pending;
  for (;;) {
    char* raw = readline(pending.empty() ? ">> " : "... ");
    if (!raw) break;
    std::string line(raw);
    std::free(raw);
    if (pending.empty() && (line == "exit" || line == "quit")) break;
    if (line.find_first_not_of(" \t") != std::string::npos) add_history(line.c_str());
    pending += line + "\n";
    if (incomplete(pending)) continue;
    std::string code = std::move(pending);
    pending.clear();
    runCode(code);
  }
  if (!history.empty()) write_history(history.c_str());
  completingIn = nullptr;
  if (!pending.empty()) {
    // The input ended inside a block: say so rather than drop it unseen.
    writeOutput(errorReport(foundation::core::except::Error("VANTEL:sgsh:UnfinishedBlock")));
    return 1;
  }
  return 0;
}

}  // namespace sgsh
