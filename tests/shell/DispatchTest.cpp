// The language and the platform's function dispatcher: library code calls
// the language's built-ins by name, function handles made by the language
// run through the dispatcher (as listeners and callbacks run them), and
// scripts call functions that loaded libraries export.
#include <gtest/gtest.h>

#include <foundation/core/except/Error.h>
#include <vcos/FunctionDispatcher.h>
#include <vx/vx.h>

#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"

namespace sgsh {
namespace {

std::string text(const vxArray* a) { return vxArrayToStdString(a); }

TEST(DispatchTest, LibraryCodeCallsBuiltinsByName) {
  Interpreter in;
  matrix::unique_vxArray arg(vxCreateString("shout"));
  const vxArray* prhs[] = {arg.get()};
  vxArray* plhs[1] = {nullptr};
  inCallFcn("upper", 1, plhs, 1, prhs);
  matrix::unique_vxArray out(plhs[0]);
  EXPECT_EQ(text(out.get()), "SHOUT");

  // Output of a built-in called this way goes to the same sink.
  std::string printed;
  OutputCapture capture([&](std::string_view s) { printed += s; });
  inCallFcn("disp", 0, nullptr, 1, prhs);
  EXPECT_EQ(printed, "shout\n");
}

TEST(DispatchTest, HandlesMadeByTheLanguageRunThroughTheDispatcher) {
  Interpreter in;
  in.run("k = 3; h = @(x) x * k; named = @numel; k = 0;");
  matrix::unique_vxArray four(vxCreateDoubleScalar(4));
  const vxArray* prhs[] = {four.get()};
  vxArray* plhs[1] = {nullptr};
  vcos::FunctionDispatcher::instance().callFunctionHandle(in.findVariable("h")->get(), 1, plhs, 1, prhs);
  matrix::unique_vxArray out(plhs[0]);
  ASSERT_NE(out, nullptr);
  EXPECT_EQ(vxGetScalar(out.get()), 12) << "the handle keeps the k it captured";

  plhs[0] = nullptr;
  vcos::FunctionDispatcher::instance().callFunctionHandle(in.findVariable("named")->get(), 1, plhs, 1, prhs);
  matrix::unique_vxArray count(plhs[0]);
  EXPECT_EQ(vxGetScalar(count.get()), 1);

  // An error inside the handle reaches the caller with its identifier.
  in.run("bad = @() error('cb:fail', 'callback failed');");
  try {
    vcos::FunctionDispatcher::instance().callFunctionHandle(in.findVariable("bad")->get(), 0, nullptr, 0, nullptr);
    FAIL() << "expected an error";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "cb:fail");
  }
}

TEST(DispatchTest, ScriptsCallFunctionsThatLibrariesExport) {
  void* lib = vcos::FunctionDispatcher::instance().loadLibrary(SGSH_TEST_BUILTIN_LIBRARY);
  ASSERT_NE(lib, nullptr);
  Interpreter in;
  in.run("[a, b] = vcosTestReverseArgs(1, 'two');");
  EXPECT_EQ(text(in.findVariable("a")->get()), "two");
  EXPECT_EQ(vxGetScalar(in.findVariable("b")->get()), 1);
  vcos::FunctionDispatcher::instance().removeLibrary(lib);
  try {
    in.run("vcosTestReverseArgs(1)");
    FAIL() << "expected an error once the library is gone";
  } catch (const foundation::core::except::Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgsh:Undefined");
  }
}

}  // namespace
}  // namespace sgsh
