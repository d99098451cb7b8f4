// The ways to run the language: a file, a piece of code, or an interactive
// session with line editing and history. Errors are reported as
// "Error: <message> (<identifier>)" and never end the process abnormally.
#pragma once

#include <string>
#include <string_view>

#include "sgsh/Interpreter.h"

namespace sgsh {

class Shell {
 public:
  Shell();
  ~Shell();
  Shell(const Shell&) = delete;
  Shell& operator=(const Shell&) = delete;

  // Runs the file; 0 on success, 1 after an uncaught error (reported).
  int runFile(const std::string& path);
  // Runs the code; 0 on success, 1 after an uncaught error (reported).
  int runCode(std::string_view code);
  // Reads, runs and shows until end of input or "exit"; errors are reported
  // and the session goes on.
  int repl();

  Interpreter& interpreter() noexcept { return interp_; }

  // The report line of an uncaught error.
  static std::string errorReport(const std::exception& e);

 private:
  Interpreter interp_;
};

}  // namespace sgsh
