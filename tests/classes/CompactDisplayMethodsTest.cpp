// The compact display providers of graphics objects called as methods, and
// method aliases, on the real classes.
#include <string>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/classinfo/MethodAliasMI.h"
#include "sgutils/classinfo/OverloadCustomCompactDisplayProviderMI.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using sgtest::errorId;

class CompactDisplayMethodsTest : public LineInAxesTest {
 protected:
  // Runs a method info directly with array inputs; its one output as text.
  static std::string run(const COSMethodInfo& method, std::initializer_list<const vxArray*> in, int nlhs = 1) {
    std::vector<COSValue> args;
    for (const vxArray* a : in) args.emplace_back(a);
    COSValue out[2];
    method.invoke(COSGetPublicClient(), nlhs, out, static_cast<int>(args.size()), args.data());
    Arr result(out[0].asPointer<vxArray>());
    return result && vxIsChar(result.get()) ? vxArrayToStdString(result.get()) : std::string();
  }
};

TEST_F(CompactDisplayMethodsTest, ShortClassNameAndGraphicsForMixedArrays) {
  const OverloadCustomCompactDisplayProviderMI column(COSID("vantel.graphics.Graphics"),
                                                      "compactRepresentationForColumn");
  Arr one(omCreateVCOSScalar(line));
  EXPECT_EQ(run(column, {one.get()}), "1x1 Line");
  Arr mixed(omCreateVCOSMatrix(1, 2, "vantel.graphics.Graphics"));
  omSetArrayElement(mixed.get(), 0, line);
  omSetArrayElement(mixed.get(), 1, axes);
  omSetClassOfHeterogeneousArray(mixed.get());
  EXPECT_EQ(run(column, {mixed.get()}), "1x2 Graphics");
  // An array of lines with a deleted member is still an array of lines.
  Arr lines(omCreateVCOSMatrix(2, 1, "vantel.graphics.primitive.Line"));
  COSInterfacePtr gone = sgclasses::create(sgclasses::kLineClass, axes);
  omSetArrayElement(lines.get(), 0, line);
  omSetArrayElement(lines.get(), 1, gone);
  gone->deleteObject(COSGetPublicClient());
  EXPECT_EQ(run(column, {lines.get()}), "2x1 Line");

  Arr extra(vxCreateDoubleScalar(1));
  EXPECT_EQ(errorId([&] { run(column, {one.get(), extra.get(), extra.get()}); }), "VANTEL:maxrhs");
  EXPECT_EQ(errorId([&] { run(column, {}); }), "VANTEL:minrhs");
  EXPECT_EQ(errorId([&] { run(column, {one.get()}, 2); }), "VANTEL:maxlhs");
}

TEST_F(CompactDisplayMethodsTest, AliasRunsTheTargetOfTheObjectsClass) {
  const COSID graphics("vantel.graphics.Graphics");
  const MethodAliasMI alias(graphics, "handleNumber", "double");
  Arr self(omCreateVCOSScalar(line));
  std::vector<COSValue> in{COSValue(self.get())};
  COSValue out[1];
  int nlhs = 1;
  alias.invoke(COSGetPublicClient(), nlhs, out, 1, in.data());
  Arr number(out[0].asPointer<vxArray>());
  ASSERT_TRUE(number && vxIsDouble(number.get()));
  vxArray* again[1] = {nullptr};
  const vxArray* args[1] = {self.get()};
  omCallMethod("vantel.graphics.Graphics", "double", COSGetPublicClient(), 1, again, 1, args, true);
  Arr expected(again[0]);
  EXPECT_EQ(vxGetScalar(number.get()), vxGetScalar(expected.get()));

  const MethodAliasMI dangling(graphics, "dangling", "noSuchMethod");
  EXPECT_EQ(errorId([&] { run(dangling, {self.get()}); }), "VANTEL:vcos:UndefinedFunction");
}

}  // namespace
}  // namespace sgtest::classes
