// The evaluator through its C++ face: values shared until written, state
// kept after errors, calls by name from C++, output capture, and the
// display formats that scripts rely on.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <vx/vx.h>

#include "sgsh/Display.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"
#include "sgsh/ScriptError.h"
#include "sgsh/Shell.h"

namespace sgsh {
namespace {

// Runs code and returns what it printed.
std::string run(Interpreter& in, std::string_view code) {
  std::string text;
  OutputCapture capture([&](std::string_view s) { text += s; });
  in.run(code);
  return text;
}

double scalar(const Interpreter& in, const std::string& name) {
  const Value* v = in.findVariable(name);
  EXPECT_NE(v, nullptr) << name;
  return v ? vxGetScalar(v->get()) : 0;
}

TEST(InterpreterTest, AssignmentSharesUntilOneSideWrites) {
  Interpreter in;
  run(in, "a = {1, struct('f', [1 2 3])}; b = a; b{2}.f(2) = 20; c = a{2}.f(2); d = b{2}.f(2);");
  EXPECT_EQ(scalar(in, "c"), 2);
  EXPECT_EQ(scalar(in, "d"), 20);
  // The handle captured k when it was made; a later k does not reach it.
  run(in, "k = 1; h = @(x) x + k; k = 50; r = h(1);");
  EXPECT_EQ(scalar(in, "r"), 2);
}

TEST(InterpreterTest, FailedAssignmentsLeaveVariablesUnchanged) {
  Interpreter in;
  run(in, "m = [1 2; 3 4]; s.a = 1;");
  EXPECT_THROW(in.run("m(:, 1) = [1 2 3];"), foundation::core::except::IMsgIDException);
  EXPECT_THROW(in.run("m(9) = 1;"), foundation::core::except::IMsgIDException);
  EXPECT_THROW(in.run("s.a.b(0) = 1;"), foundation::core::except::IMsgIDException);
  EXPECT_EQ(run(in, "m, s"), "m =\n    1   2\n    3   4\ns =\n  struct with fields:\n    a: 1\n");
}

TEST(InterpreterTest, StateSurvivesUncaughtErrorsAndFunctionsStayDefined) {
  Interpreter in;
  run(in, "x = 5;\nfunction y = twice(v)\n  y = 2 * v;\nend\n");
  try {
    in.run("x = x + 1; error('t:fail', 'stop %d', x); x = 100;");
    FAIL() << "expected an error";
  } catch (const ScriptError& e) {
    EXPECT_EQ(e.identifier(), "t:fail");
    EXPECT_STREQ(e.what(), "stop 6");
  }
  EXPECT_EQ(scalar(in, "x"), 6);
  run(in, "z = twice(x);");
  EXPECT_EQ(scalar(in, "z"), 12);
}

TEST(InterpreterTest, BuiltinsAndScriptFunctionsAreCallableByName) {
  Interpreter in;
  run(in, "function [a, b] = pair(x)\n  a = x; b = -x;\nend\n");
  std::vector<Value> args{Value::scalar(3)};
  std::vector<Value> out = in.call("pair", args, 2);
  ASSERT_EQ(out.size(), 2u);
  EXPECT_EQ(vxGetScalar(out[1].get()), -3);
  std::vector<Value> fmt{Value::text("%d-%d"), Value::scalar(1), Value::scalar(2)};
  EXPECT_EQ(vxArrayToStdString(in.call("sprintf", fmt, 1).at(0).get()), "1-2");
  try {
    in.call("no_such_function", {}, 1);
    FAIL() << "expected an error";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgsh:Undefined");
  }
}

TEST(InterpreterTest, ShellReportsErrorsWithIdentifierAndGoesOn) {
  Shell shell;
  std::string text;
  OutputCapture capture([&](std::string_view s) { text += s; });
  EXPECT_EQ(shell.runCode("q = 1;\nundefined_name\n"), 1);
  EXPECT_EQ(text, "Error: Undefined function or variable 'undefined_name'. (VANTEL:sgsh:Undefined)\n");
  text.clear();
  EXPECT_EQ(shell.runCode("error('no identifier here')"), 1);
  EXPECT_EQ(text, "Error: no identifier here\n");
  text.clear();
  EXPECT_EQ(shell.runCode("q"), 0);
  EXPECT_EQ(text, "q = 1\n");
}

TEST(InterpreterTest, NumberDisplayPicksOneStylePerArray) {
  EXPECT_EQ(numberText(3), "3");
  EXPECT_EQ(numberText(-0.5), "-0.5000");
  EXPECT_EQ(numberText(123456.5), "1.2346e+05");
  EXPECT_EQ(numberText(0.00012), "1.2000e-04");
  Interpreter in;
  // One style for the whole array, right-aligned columns.
  EXPECT_EQ(run(in, "a = [1 1000.5]"), "a =\n       1.0000   1000.5000\n");
  EXPECT_EQ(run(in, "b = [1; -20]"), "b =\n      1\n    -20\n");
  EXPECT_EQ(run(in, "c = [1e6 1]"), "c =\n    1000000         1\n");
}

const double* dataOf(const Interpreter& in, const std::string& name) {
  return vxGetPr(in.findVariable(name)->get());
}

TEST(InterpreterTest, IndexedAssignmentWritesInPlaceUnlessShared) {
  Interpreter in;
  run(in, "z = zeros(1, 100);");
  const double* before = dataOf(in, "z");
  run(in, "z(5) = 1; z(end) = 2;");
  EXPECT_EQ(dataOf(in, "z"), before) << "an unshared variable was copied";
  // A shared copy keeps its elements; the writer gets storage of its own.
  run(in, "w = z; z(1) = 7; z(end + 1) = 8;");
  EXPECT_EQ(dataOf(in, "w"), before);
  EXPECT_EQ(run(in, "disp([w(1) numel(w) z(1) numel(z)])"), "      0   100     7   101\n");
  // Growing a row one element at a time moves its data only now and then.
  run(in, "g = [];");
  int moves = 0;
  const double* last = nullptr;
  for (int k = 0; k < 500; ++k) {
    run(in, "g(end + 1) = numel(g);");
    if (dataOf(in, "g") != last) ++moves;
    last = dataOf(in, "g");
  }
  EXPECT_LT(moves, 25);
  EXPECT_EQ(run(in, "disp([g(1) g(end) numel(g)])"), "      0   499   500\n");
}

TEST(InterpreterTest, FailedInPlaceAssignmentsLeaveVariablesAndSharersIntact) {
  Interpreter in;
  run(in, "x = [1 2 3]; y = x; c = {1, 2}; s = struct('a', {1, 2});");
  const double* before = dataOf(in, "x");
  for (const char* bad : {"x(0) = 1;", "x(1.5) = 1;", "x(1:2) = [1 2 3];", "x(5) = {1};", "c{1:2} = 3;",
                          "c(3) = 4;", "s(3) = 5;", "x(end + 1) = undefined_thing;", "fresh(0) = 1;",
                          "fresh{0} = 1;"}) {
    EXPECT_THROW(in.run(bad), foundation::core::except::IMsgIDException) << bad;
  }
  EXPECT_EQ(dataOf(in, "x"), before);
  EXPECT_EQ(run(in, "x, y, c"), "x =\n    1   2   3\ny =\n    1   2   3\nc =\n  1x2 cell\n    {1}   {2}\n");
  EXPECT_EQ(in.findVariable("fresh"), nullptr) << "a failed assignment defined the variable";
  // The index may read the variable it assigns to.
  run(in, "x(x > 1) = 0; x(numel(x) + 1) = 9;");
  EXPECT_EQ(run(in, "x"), "x =\n    1   0   0   9\n");
}

TEST(InterpreterTest, CommandsDependOnWhetherTheNameIsAVariable) {
  Interpreter in;
  run(in, "function r = tag(varargin)\n  r = strjoin(varargin, '/');\nend\n");
  EXPECT_EQ(run(in, "tag -1 b"), "ans = '-1/b'\n");
  run(in, "tag = 10;");
  EXPECT_EQ(run(in, "tag -1"), "ans = 9\n");
  try {
    in.run("tag b");
    FAIL() << "expected an error";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgsh:CommandOnVariable");
  }
  run(in, "clear tag");
  EXPECT_EQ(run(in, "tag x;"), "");
  EXPECT_EQ(vxArrayToStdString(in.findVariable("ans")->get()), "x");
}

TEST(InterpreterTest, ClearAndWhoWorkOnTheCurrentWorkspace) {
  Interpreter in;
  run(in, "alpha = 1; beta = 'b'; gamma = {}; ab = 2;\n"
          "function r = inner()\n  local = 1; clear\n  r = numel(who);\nend\n");
  EXPECT_EQ(run(in, "who"), "Variables:\n  ab  alpha  beta  gamma\n");
  EXPECT_EQ(run(in, "whos a*"), "  Name     Size    Class\n  ab       1x1     double\n  alpha    1x1     double\n");
  run(in, "n = inner();");
  EXPECT_EQ(scalar(in, "n"), 0);
  EXPECT_NE(in.findVariable("alpha"), nullptr) << "clear in a function reached the caller's workspace";
  run(in, "clear a* n nothing_here");
  EXPECT_EQ(in.variableNames(), (std::vector<std::string>{"beta", "gamma"}));
  run(in, "clear all");
  EXPECT_TRUE(in.variableNames().empty());
  EXPECT_EQ(run(in, "who"), "");
}

}  // namespace
}  // namespace sgsh
