// The typed signatures of the default and factory handlers: dispatch by
// name picks them only for objects of a handler class with a name (and, for
// setDefaultPropValue, an optional value).
#include <string>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "support/ErrorId.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using sgtest::errorId;

class DefaultHandlerSignatureTest : public ClassesTest {
 protected:
  void SetUp() override {
    ClassesTest::SetUp();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  }
  // Calls the handler by name on the handler class, without dispatch on
  // the first input, so the signature alone decides.
  static Arr call(const char* method, std::vector<const vxArray*> in) {
    vxArray* out[1] = {nullptr};
    omCallMethod("vantel.graphics.internal.GraphicsPropertyHandler", method, COSGetPublicClient(), 1, out,
                 static_cast<int>(in.size()), in.data(), /*dispatchOnObject=*/false);
    return Arr(out[0]);
  }
  COSInterfacePtr figure;
};

TEST_F(DefaultHandlerSignatureTest, OnlyHandlerObjectsWithANameMatch) {
  Arr self(omCreateVCOSScalar(figure)), name(vxCreateString("defaultLineLineWidth")), width(vxCreateDoubleScalar(2));
  call("setDefaultPropValue", {self.get(), name.get(), width.get()});
  EXPECT_EQ(vxGetScalar(call("getDefaultPropValue", {self.get(), name.get()}).get()), 2.0);
  // The value of setDefaultPropValue is optional: without it, the possible values.
  EXPECT_TRUE(vxIsCell(call("setDefaultPropValue", {self.get(), name.get()}).get()));

  Arr number(vxCreateDoubleScalar(1));
  for (const char* method :
       {"getDefaultPropValue", "setDefaultPropValue", "getFactoryPropValue", "filterDefaultFactoryPropName"}) {
    EXPECT_EQ(errorId([&] { call(method, {number.get(), name.get()}); }), "VANTEL:vcos:NoMatchingSignature")
        << method << " took a number for its object";
    EXPECT_EQ(errorId([&] { call(method, {self.get()}); }), "VANTEL:vcos:NoMatchingSignature")
        << method << " ran without a name";
  }
  EXPECT_EQ(errorId([&] { call("getDefaultPropValue", {self.get(), name.get(), width.get()}); }),
            "VANTEL:vcos:NoMatchingSignature");
  EXPECT_EQ(errorId([&] { call("setDefaultPropValue", {self.get(), name.get(), width.get(), width.get()}); }),
            "VANTEL:vcos:NoMatchingSignature");
}

}  // namespace
}  // namespace sgtest::classes
