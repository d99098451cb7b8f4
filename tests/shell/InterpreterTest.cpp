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

}  // namespace
}  // namespace sgsh
