// The language under hostile input: deep nesting, long flat chains, deep
// values, huge subscripts and sizes, interrupts and run limits. Every input
// ends in a result or an error with an identifier, and a failed command
// leaves the workspace as it was.
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include <foundation/core/except/IMsgIDException.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "sgsh/BuiltinRegistry.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"
#include "sgsh/ScriptError.h"

namespace sgsh {
namespace {

using foundation::core::except::IMsgIDException;

// The identifier the code raises, or "" when it runs through.
std::string raised(Interpreter& in, const std::string& code) {
  OutputCapture quiet([](std::string_view) {});
  try {
    in.run(code);
  } catch (const std::exception& e) {
    return identify(e).identifier;
  }
  return {};
}

double scalar(const Interpreter& in, const std::string& name) {
  const Value* v = in.findVariable(name);
  EXPECT_NE(v, nullptr) << name;
  return v ? vxGetScalar(v->get()) : 0;
}

std::string repeated(const std::string& s, int n) {
  std::string out;
  for (int i = 0; i < n; ++i) out += s;
  return out;
}

std::string chain(const std::string& term, const std::string& op, int n) {
  std::string out = term;
  for (int i = 1; i < n; ++i) out += op + term;
  return out;
}

TEST(HostileInputTest, DeepNestingIsASyntaxErrorNotAStackOverflow) {
  Interpreter in;
  for (const std::string& open : {"(", "[", "{", "-", "~", "f("}) {
    const std::string close = open == "(" || open == "f(" ? ")" : open == "[" ? "]" : open == "{" ? "}" : "";
    EXPECT_EQ(raised(in, "x = " + repeated(open, 5000) + "1" + repeated(close, 5000) + ";"), "VANTEL:sgsh:TooDeeplyNested")
        << open;
  }
  EXPECT_EQ(raised(in, repeated("if 1\n", 3000) + repeated("end\n", 3000)), "VANTEL:sgsh:TooDeeplyNested");
  EXPECT_EQ(raised(in, "s.a = 1; y = s" + repeated(".a", 5000) + ";"), "VANTEL:sgsh:TooDeeplyNested");
  EXPECT_EQ(raised(in, "y = 1" + repeated("'", 5000) + ";"), "VANTEL:sgsh:TooDeeplyNested");
  // Ordinary nesting still parses and runs.
  EXPECT_EQ(raised(in, "z = " + repeated("(", 50) + "7" + repeated(")", 50) + ";"), "");
  EXPECT_EQ(scalar(in, "z"), 7);
}

TEST(HostileInputTest, LongFlatChainsRunAndFreeWithoutRecursion) {
  Interpreter in;
  EXPECT_EQ(raised(in, "a = " + chain("1", "+", 40000) + ";"), "");
  EXPECT_EQ(scalar(in, "a"), 40000);
  EXPECT_EQ(raised(in, "b = " + chain("1", "*", 40000) + " - " + chain("2", "-", 3) + ";"), "");
  EXPECT_EQ(scalar(in, "b"), -5);  // left to right: 1 - 2 - 2 - 2
  EXPECT_EQ(raised(in, "c = " + chain("0", "||", 40000) + " || 1;"), "");
  EXPECT_EQ(scalar(in, "c"), 1);
  EXPECT_EQ(raised(in, "d = " + chain("1", "&&", 40000) + " && 0;"), "");
  EXPECT_EQ(scalar(in, "d"), 0);
  // Short-circuit still skips what it need not evaluate.
  EXPECT_EQ(raised(in, "e = 0 && undefinedName || 1;"), "");
  EXPECT_EQ(scalar(in, "e"), 1);
  // A handle over a long chain captures its variables and outlives the line.
  EXPECT_EQ(raised(in, "k = 2; f = @() " + chain("k", "+", 40000) + ";"), "");
  EXPECT_EQ(raised(in, "g = f();"), "");
  EXPECT_EQ(scalar(in, "g"), 80000);
}

TEST(HostileInputTest, DeepValuesAreBuiltComparedAndFreed) {
  Interpreter in;
  EXPECT_EQ(raised(in,
                   "c = {}; s = struct(); for k = 1:100000, c = {c}; s = struct('a', s); end;"
                   "same = isequal(c, c); copy = c; same2 = isequal(c, copy); differ = isequal(c, {c});"
                   "clear c copy s"),
            "");
  EXPECT_EQ(scalar(in, "same"), 1);
  EXPECT_EQ(scalar(in, "same2"), 1);
  EXPECT_EQ(scalar(in, "differ"), 0);
}

TEST(HostileInputTest, HugeSubscriptsAndSizesRaiseAndChangeNothing) {
  Interpreter in;
  EXPECT_EQ(raised(in, "x = 1:3;"), "");
  for (const char* code : {"x(Inf) = 1;", "x(1e20) = 1;", "x(1, Inf) = 1;", "x(Inf, 1) = 5;", "y = x(Inf);"})
    EXPECT_EQ(raised(in, code), "VANTEL:sgsh:IndexTooLarge") << code;
  EXPECT_EQ(raised(in, "x(2^40, 2^40) = 1;"), "VANTEL:sgsh:TooLarge");
  EXPECT_EQ(raised(in, "x(NaN) = 1;"), "VANTEL:sgsh:BadIndex");
  EXPECT_EQ(raised(in, "x(-Inf) = 1;"), "VANTEL:sgsh:BadIndex");
  EXPECT_EQ(raised(in, "n = numel(x); last = x(end);"), "");
  EXPECT_EQ(scalar(in, "n"), 3);
  EXPECT_EQ(scalar(in, "last"), 3);
  for (const char* code : {"zeros(Inf)", "ones(1, 1e300)", "numel(1:Inf)", "for k = 1:Inf, end", "repmat(1, 1e10, 1e10)",
                           "zeros(2^40, 2^40)", "cell(1e10, 1e10)"})
    EXPECT_EQ(raised(in, code), "VANTEL:sgsh:TooLarge") << code;
  EXPECT_EQ(raised(in, "linspace(0, 1, NaN)"), "VANTEL:sgsh:BadSize");
  EXPECT_EQ(raised(in, "zeros(NaN)"), "VANTEL:sgsh:BadSize");
  // A dimension far past the last is a singleton, not a list grown to reach it.
  EXPECT_EQ(raised(in, "s = sum([1 2], 1e8); m = max([4 5], [], 1e15);"), "");
  EXPECT_EQ(raised(in, "size(1, Inf)"), "VANTEL:sgsh:IndexTooLarge");
  // A scalar against an empty array gives an empty result (it read element 1 of the empty one).
  EXPECT_EQ(raised(in, "m1 = numel(mod(5:1, 2)); m2 = numel(rem(2, [])); m3 = numel(max(zeros(1, 0), 3));"), "");
  EXPECT_EQ(scalar(in, "m1") + scalar(in, "m2") + scalar(in, "m3"), 0);
  // No subscripts name no place: before, these wrote past an empty array.
  for (const char* code : {"e = []; e() = 5;", "c{} = 'c';", "x() = 4;"})
    EXPECT_EQ(raised(in, code), "VANTEL:sgsh:NoSubscripts") << code;
  // Matrix powers square their way up: 1e10 products would never end.
  EXPECT_EQ(raised(in, "p = [1 1; 0 1]^1e10; q = p(1, 2);"), "");
  EXPECT_EQ(scalar(in, "q"), 1e10);
  EXPECT_EQ(raised(in, "[1 1; 0 1]^Inf"), "VANTEL:sgsh:MatrixPower");
}

TEST(HostileInputTest, ElementLimitCapsEveryArrayTheLanguageMakes) {
  Interpreter in;
  const vxSize before = ops::elementLimit();
  ops::setElementLimit(1000);
  EXPECT_EQ(raised(in, "zeros(100, 11)"), "VANTEL:sgsh:TooLarge");
  EXPECT_EQ(raised(in, "x = 1:1001;"), "VANTEL:sgsh:TooLarge");
  EXPECT_EQ(raised(in, "y(1001) = 1;"), "VANTEL:sgsh:IndexTooLarge");
  EXPECT_EQ(raised(in, "z = repmat([1 2], 1, 600);"), "VANTEL:sgsh:TooLarge");
  EXPECT_EQ(raised(in, "w = zeros(10, 100);"), "");
  ops::setElementLimit(before);
}

TEST(HostileInputTest, StepLimitAndInterruptStopRunningCodeAndKeepTheWorkspace) {
  Interpreter in;
  in.setStepLimit(1000);
  EXPECT_EQ(raised(in, "x = 1; while true, end"), "VANTEL:sgsh:StepLimit");
  EXPECT_EQ(scalar(in, "x"), 1);
  // Showing arrays is work too: a loop that shows a large one runs out.
  in.setStepLimit(1000);
  EXPECT_EQ(raised(in, "big = zeros(1, 400); for k = 1:10, big, end"), "VANTEL:sgsh:StepLimit");
  in.setStepLimit(0);
  // An interrupt from another thread, as Ctrl-C's signal handler makes it.
  auto interruptSoon = [] {
    return std::thread([] {
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
      Interpreter::requestInterrupt();
    });
  };
  std::thread ctrlC = interruptSoon();
  EXPECT_EQ(raised(in, "y = 2; while true, x = x + 1; end"), "VANTEL:sgsh:Interrupted");
  ctrlC.join();
  EXPECT_EQ(scalar(in, "y"), 2);
  // The interrupt was taken up: the next command runs.
  EXPECT_EQ(raised(in, "z = 3;"), "");
  // try/catch sees it like any other error.
  ctrlC = interruptSoon();
  EXPECT_EQ(raised(in, "try, while true, end, catch err, id = err.identifier; end"), "");
  ctrlC.join();
  EXPECT_EQ(raised(in, "assert(strcmp(id, 'VANTEL:sgsh:Interrupted'));"), "");
}

TEST(HostileInputTest, EveryErrorReachingTryCatchIsCaughtWithAnIdentifier) {
  Interpreter in;
  // Standard-library exceptions get identifiers of their own.
  EXPECT_EQ(identify(std::bad_alloc()).identifier, "VANTEL:vcos:OutOfMemory");
  EXPECT_EQ(identify(std::length_error("vector")).identifier, "VANTEL:sgsh:LengthError");
  EXPECT_EQ(identify(std::out_of_range("at")).identifier, "VANTEL:sgsh:RangeError");
  EXPECT_EQ(identify(std::runtime_error("other")).identifier, "VANTEL:sgsh:InternalError");
  EXPECT_EQ(raised(in, "try, linspace(0, 1, NaN), catch e, id = e.identifier; end"), "");
  const Value* id = in.findVariable("id");
  ASSERT_NE(id, nullptr);
  EXPECT_EQ(ops::textOf(id->get()), "VANTEL:sgsh:BadSize");
  // error() refuses malformed identifiers, also in an error struct.
  for (const char* bad : {"a::b", "1a:b", "a:b:", "a:b!", "a:_b"})
    EXPECT_EQ(raised(in, std::string("error('") + bad + "', 'text')"), "VANTEL:sgsh:BadIdentifier") << bad;
  // Text with a blank is a format, not an identifier.
  EXPECT_EQ(raised(in, "try, error('a: %d', 1), catch e, m = e.message; end"), "");
  EXPECT_EQ(raised(in, "error(struct('identifier', 'x::y', 'message', 'm'))"), "VANTEL:sgsh:BadIdentifier");
  EXPECT_EQ(raised(in, "error('good:id-1:x_2', 'text %d', 3)"), "good:id-1:x_2");
  EXPECT_TRUE(isWellFormedIdentifier("a:b"));
  EXPECT_FALSE(isWellFormedIdentifier("ab"));
}

TEST(HostileInputTest, RecursionThroughEveryEntryIsLimited) {
  Interpreter in;
  EXPECT_EQ(raised(in, "f = @(g, n) g(g, n + 1); f(f, 1)"), "VANTEL:sgsh:RecursionLimit");
  // Code that runs in the base workspace counts as well, also from the base.
  EXPECT_EQ(raised(in, "function again()\n  again();\nend"), "");
  EXPECT_EQ(raised(in, "again()"), "VANTEL:sgsh:RecursionLimit");
  in.runInBase("r = 1;");
  EXPECT_EQ(scalar(in, "r"), 1);
}

// A built-in that runs its text argument in the base workspace, as a
// callback given as text does.
void runTextInBase(Interpreter& in, int, std::vector<Value>&, std::span<const Value> args) {
  in.runInBase(ops::textOf(args[0].get()));
}

TEST(HostileInputTest, FunctionRedefinedWhileRunningStaysAliveUntilItReturns) {
  BuiltinRegistry::instance().add<runTextInBase>("testRunInBase");
  Interpreter in;
  // Defined by an earlier run, so only the function table holds it.
  EXPECT_EQ(raised(in,
                   "function r = busy()\n"
                   "  testRunInBase(sprintf('function r = busy()\\n  r = -1;\\nend'));\n"
                   "  x = 1:100;\n"
                   "  r = sum(x);\n"
                   "end"),
            "");
  EXPECT_EQ(raised(in, "a = busy(); b = busy();"), "");
  EXPECT_EQ(scalar(in, "a"), 5050);  // the old body ran to its end
  EXPECT_EQ(scalar(in, "b"), -1);    // later calls reach the new one
  // Callback code that calls itself without end is stopped by the limit.
  EXPECT_EQ(raised(in, "function loop()\n  testRunInBase('loop();');\nend"), "");
  EXPECT_EQ(raised(in, "testRunInBase('loop();')"), "VANTEL:sgsh:RecursionLimit");
}

TEST(HostileInputTest, TextHoldsNulAndNamesWithOneAreRefused) {
  Interpreter in;
  EXPECT_EQ(raised(in, std::string("t = 'a\0b'; n = numel(t); m = numel(sprintf('a%cb', 0));", 55)), "");
  EXPECT_EQ(scalar(in, "n"), 3);
  EXPECT_EQ(scalar(in, "m"), 3);
  EXPECT_EQ(raised(in, "s.(['a' char(0) 'b']) = 1;"), "VANTEL:sgsh:NulInName");
  EXPECT_EQ(raised(in, "s = struct(['a' char(0)], 1);"), "VANTEL:sgsh:NulInName");
  EXPECT_EQ(raised(in, "q = isfield(struct('a', 1), ['a' char(0) 'z']);"), "");
  EXPECT_EQ(scalar(in, "q"), 0);
  EXPECT_EQ(in.findVariable("s"), nullptr);
}

}  // namespace
}  // namespace sgsh
