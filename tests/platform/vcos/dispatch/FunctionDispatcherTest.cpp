// Calls by name: registered built-ins, exported built-ins of a loaded library,
// the cache across registry changes, function-handle callers and runners of
// callback texts.
#include <gtest/gtest.h>

#include <string>

#include <foundation/core/except/Error.h>
#include <vcos/FunctionDispatcher.h>
#include <vx/vxCreate.h>
#include <vx/matrix.h>
#include <vx/vxFunctionHandleData.h>
#include "support/ErrorId.h"

using foundation::core::except::Error;
using vcos::FunctionDispatcher;

namespace {

// Stand-ins for arrays: the dispatcher only passes the pointers through.
vxArray* fakeArray(int& slot) { return reinterpret_cast<vxArray*>(&slot); }

int firstCalls = 0;
int secondCalls = 0;
void firstBuiltin(int, vxArray*[], int, const vxArray*[]) { ++firstCalls; }
void secondBuiltin(int, vxArray*[], int, const vxArray*[]) { ++secondCalls; }
void echoBuiltin(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  for (int i = 0; i < nlhs && i < nrhs; ++i) plhs[i] = const_cast<vxArray*>(prhs[i]);
}

using sgtest::errorId;
}  // namespace

TEST(FunctionDispatcher, RegisteredBuiltinIsCalledByNameWithItsArguments) {
  FunctionDispatcher d;
  d.registerBuiltin("echo", &echoBuiltin);
  int a = 0, b = 0;
  const vxArray* in[] = {fakeArray(a), fakeArray(b)};
  vxArray* out[2] = {nullptr, nullptr};
  d.call("echo", 2, out, 2, in);
  EXPECT_EQ(out[0], in[0]);
  EXPECT_EQ(out[1], in[1]);
}

TEST(FunctionDispatcher, UnknownNameRaisesWithTheName) {
  FunctionDispatcher d;
  try {
    d.call("noSuchFunction", 0, nullptr, 0, nullptr);
    FAIL() << "no error";
  } catch (const Error& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:UndefinedFunction");
    ASSERT_EQ(e.message().arguments().size(), 1u);
    EXPECT_EQ(e.message().arguments()[0], "noSuchFunction");
  }
}

TEST(FunctionDispatcher, ReRegistrationAndRemovalReachThroughTheCache) {
  FunctionDispatcher d;
  firstCalls = secondCalls = 0;
  d.registerBuiltin("f", &firstBuiltin);
  d.call("f", 0, nullptr, 0, nullptr);  // now cached
  d.registerBuiltin("f", &secondBuiltin);
  d.call("f", 0, nullptr, 0, nullptr);
  EXPECT_EQ(firstCalls, 1);
  EXPECT_EQ(secondCalls, 1) << "a stale cache entry called the replaced built-in";
  EXPECT_TRUE(d.unregisterBuiltin("f"));
  EXPECT_EQ(d.find("f"), nullptr);
  EXPECT_FALSE(d.unregisterBuiltin("f"));
}

TEST(FunctionDispatcher, NamesAreCaseSensitive) {
  FunctionDispatcher d;
  d.registerBuiltin("rootFactoryValues", &firstBuiltin);
  EXPECT_EQ(d.find("rootfactoryvalues"), nullptr);
}

TEST(FunctionDispatcherLibraries, ExportedBuiltinIsFoundOnlyOnceTheLibraryIsRegistered) {
  FunctionDispatcher d;
  EXPECT_EQ(d.find("vcosTestReverseArgs"), nullptr);
  void* lib = d.loadLibrary(VCOS_TEST_BUILTIN_LIBRARY);
  ASSERT_NE(lib, nullptr);
  EXPECT_EQ(d.loadLibrary(VCOS_TEST_BUILTIN_LIBRARY), lib) << "second load of the same file";

  int a = 0, b = 0;
  const vxArray* in[] = {fakeArray(a), fakeArray(b)};
  vxArray* out[2] = {nullptr, nullptr};
  d.call("vcosTestReverseArgs", 2, out, 2, in);
  EXPECT_EQ(out[0], in[1]);
  EXPECT_EQ(out[1], in[0]);

  EXPECT_TRUE(d.removeLibrary(lib));
  EXPECT_EQ(d.find("vcosTestReverseArgs"), nullptr) << "cache kept a pointer into a removed library";
  EXPECT_FALSE(d.removeLibrary(lib));
}

TEST(FunctionDispatcherLibraries, RegisteredBuiltinShadowsAnExportOfTheSameName) {
  FunctionDispatcher d;
  d.loadLibrary(VCOS_TEST_BUILTIN_LIBRARY);
  d.registerBuiltin("vcosTestReverseArgs", &echoBuiltin);
  int a = 0, b = 0;
  const vxArray* in[] = {fakeArray(a), fakeArray(b)};
  vxArray* out[1] = {nullptr};
  d.call("vcosTestReverseArgs", 1, out, 2, in);
  EXPECT_EQ(out[0], in[0]);
}

TEST(FunctionDispatcherLibraries, MissingLibraryRaises) {
  FunctionDispatcher d;
  EXPECT_EQ(errorId([&] { d.loadLibrary("/nonexistent/libnothing.so"); }), "VANTEL:vcos:LibraryLoadFailed");
}

TEST(FunctionDispatcherGlobal, InCallFcnUsesTheProcessDispatcher) {
  auto& d = FunctionDispatcher::instance();
  d.registerBuiltin("vcosTestEcho", &echoBuiltin);
  int a = 0;
  const vxArray* in[] = {fakeArray(a)};
  vxArray* out[1] = {nullptr};
  inCallFcn("vcosTestEcho", 1, out, 1, in);
  EXPECT_EQ(out[0], in[0]);
  d.unregisterBuiltin("vcosTestEcho");
  EXPECT_EQ(errorId([&] { inCallFcn("vcosTestEcho", 1, out, 1, in); }), "VANTEL:vcos:UndefinedFunction");
}

namespace {

struct LanguageHandle : vxFunctionHandleData {
  explicit LanguageHandle(std::string n) : name(std::move(n)) {}
  std::string text() const override { return "@" + name; }
  std::string name;
};
struct ForeignHandle : vxFunctionHandleData {
  std::string text() const override { return "@foreign"; }
};

}  // namespace

TEST(FunctionDispatcherHandles, InstalledCallerRunsItsOwnHandlesAndDeclinesOthers) {
  FunctionDispatcher d;
  d.registerBuiltin("echo", &echoBuiltin);
  // The language resolves a named handle by calling the function it names.
  const int token = d.addHandleCaller([&d](const vxFunctionHandleData& h, int nlhs, vxArray* plhs[], int nrhs,
                                           const vxArray* prhs[]) {
    auto* mine = dynamic_cast<const LanguageHandle*>(&h);
    if (!mine) return false;
    d.call(mine->name, nlhs, plhs, nrhs, prhs);
    return true;
  });
  int a = 0;
  const vxArray* in[] = {fakeArray(a)};
  vxArray* out[1] = {nullptr};
  d.callFunctionHandle(LanguageHandle("echo"), 1, out, 1, in);
  EXPECT_EQ(out[0], in[0]);

  matrix::unique_vxArray handleArray(vxCreateFunctionHandle(std::make_shared<LanguageHandle>("echo")));
  out[0] = nullptr;
  d.callFunctionHandle(handleArray.get(), 1, out, 1, in);
  EXPECT_EQ(out[0], in[0]) << "a handle array reaches the same caller";
  matrix::unique_vxArray notHandle(vxCreateDoubleScalar(1));
  EXPECT_EQ(errorId([&] { d.callFunctionHandle(notHandle.get(), 0, nullptr, 0, nullptr); }),
            "VANTEL:vcos:NotAFunctionHandle");

  EXPECT_EQ(errorId([&] { d.callFunctionHandle(ForeignHandle(), 0, nullptr, 0, nullptr); }),
            "VANTEL:vcos:NoHandleCaller");
  d.removeHandleCaller(token);
  EXPECT_EQ(errorId([&] { d.callFunctionHandle(LanguageHandle("echo"), 1, out, 1, in); }),
            "VANTEL:vcos:NoHandleCaller");
}

TEST(FunctionDispatcher, CallbackTextGoesToTheNewestRunnerThatTakesItElseToTheNamedFunction) {
  FunctionDispatcher d;
  firstCalls = 0;
  d.registerBuiltin("first", &firstBuiltin);
  int a = 0;
  const vxArray* in[] = {fakeArray(a)};
  d.callText("first", 1, in);  // no runner: the text names a function
  EXPECT_EQ(firstCalls, 1);

  std::string log;
  const int older = d.addTextCaller([&](std::string_view text, int nrhs, const vxArray* prhs[]) {
    log += "older:" + std::string(text) + (nrhs == 1 && prhs[0] == in[0] ? ";" : "?;");
    return true;
  });
  const int newer = d.addTextCaller([&](std::string_view text, int, const vxArray*[]) {
    log += "newer:" + std::string(text) + ";";
    return text == "mine";
  });
  d.callText("mine", 1, in);
  d.callText("first", 1, in);
  EXPECT_EQ(log, "newer:mine;newer:first;older:first;");
  EXPECT_EQ(firstCalls, 1) << "a runner that takes the text ends the search";

  d.removeTextCaller(older);
  d.removeTextCaller(newer);
  EXPECT_EQ(errorId([&] { d.callText("x = 1;", 0, nullptr); }), "VANTEL:vcos:UndefinedFunction");
}
