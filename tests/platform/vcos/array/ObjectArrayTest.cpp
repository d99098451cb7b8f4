// Object arrays: keeping elements alive, deleted elements, heterogeneous
// classes with gaps filled, the internal and external forms, and calls
// through arrays.
#include <gtest/gtest.h>

#include "../builtin/BuiltinTestSupport.h"
#include "vcos/ArrayConversion.h"

using bt::text;

namespace {

TEST(VcosObjectArrayLifetime, ArrayKeepsItsElementsAlive) {
  COSInterfacePtr watch;
  watch.setReferenceType(COSWeakReference);
  matrix::unique_vxArray a;
  {
    COSInterfacePtr n = bt::make("bt.Node");
    watch = n.get();
    a = bt::arr(n);
  }
  EXPECT_FALSE(watch->isDestroyed()) << "the only strong holder is the array";
  auto copy = matrix::unique_vxArray(vxCreateSharedDataCopy(a.get()));
  a.reset();
  EXPECT_FALSE(watch->isDestroyed()) << "a shared copy holds it too";
  copy.reset();
  EXPECT_TRUE(watch->isDestroyed());
}

TEST(VcosObjectArrayLifetime, DeletedElementReadsAsShellOrNull) {
  COSInterfacePtr n = bt::make("bt.Node");
  auto a = bt::arr(n);
  n->deleteObject(COSGetPublicClient());
  EXPECT_EQ(omGetArrayElement(a.get(), 0).get(), n.get());
  EXPECT_TRUE(omGetArrayElement(a.get(), 0)->isDestroyed());
  EXPECT_TRUE(omGetLiveArrayElement(a.get(), 0).isNull());
  EXPECT_EQ(bt::errorId([&] { vcos::array::getElement(a.get(), 0, vcos::array::DeletedHandleBehavior::Raise); }),
            "VANTEL:vcos:InvalidHandle");
  auto valid = bt::call("isvalid", {a.get()});
  EXPECT_FALSE(vxGetLogicals(valid.get())[0]);
}

TEST(VcosObjectArrayAccess, MisuseRaises) {
  bt::setUp();
  auto a = matrix::unique_vxArray(omCreateVCOSMatrix(1, 2, "bt.Node"));
  EXPECT_TRUE(omGetArrayElement(a.get(), 1).isNull()) << "a new array holds null elements";
  EXPECT_EQ(bt::errorId([&] { omGetArrayElement(a.get(), 2); }), "VANTEL:vcos:IndexOutOfRange");
  EXPECT_EQ(bt::errorId([&] { omSetArrayElement(a.get(), 5, bt::make("bt.Node")); }), "VANTEL:vcos:IndexOutOfRange");
  EXPECT_EQ(bt::errorId([&] { omGetArrayElement(bt::number(1).get(), 0); }), "VANTEL:vcos:NotAnObjectArray");
  EXPECT_EQ(bt::errorId([&] { omCreateVCOSEmpty("bt.NoSuchClass"); }), "VANTEL:vcos:UnknownClass");
  EXPECT_EQ(omGetCOSClassID(a.get()), COSID("bt.Node"));
  EXPECT_FALSE(omIsVCOS(bt::number(1).get()));
}

TEST(VcosObjectArrayAccess, WriteDoesNotShowThroughASharedCopy) {
  auto a = bt::column({bt::make("bt.Node")}, "bt.Node");
  matrix::unique_vxArray copy(vxCreateSharedDataCopy(a.get()));
  COSInterfacePtr other = bt::make("bt.Node");
  omSetArrayElement(a.get(), 0, other);
  EXPECT_NE(omGetArrayElement(copy.get(), 0).get(), other.get());
}

// bt.Shape (heterogeneous root) > bt.Square > bt.RedSquare; bt.Round, bt.Blank.
class HeterogeneousArray : public ::testing::Test {
 protected:
  void SetUp() override { bt::setUp(); }
  std::string classAfterNarrowing(const std::vector<COSInterfacePtr>& objects) {
    auto a = bt::column(objects, "bt.Shape");
    omSetClassOfHeterogeneousArray(a.get());
    last = std::move(a);
    return vxGetClassName(last.get());
  }
  matrix::unique_vxArray last;
};

TEST_F(HeterogeneousArray, TakesTheNearestCommonClassBelowTheRoot) {
  EXPECT_EQ(classAfterNarrowing({bt::make("bt.RedSquare"), bt::make("bt.RedSquare")}), "bt.RedSquare");
  EXPECT_EQ(classAfterNarrowing({bt::make("bt.RedSquare"), bt::make("bt.Square")}), "bt.Square");
  EXPECT_EQ(classAfterNarrowing({bt::make("bt.RedSquare"), bt::make("bt.Round")}), "bt.Shape");
  EXPECT_TRUE(vxIsHeterogeneousArray(last.get()));
}

TEST_F(HeterogeneousArray, GapsAreFilledWithTheRootsDefaultElement) {
  auto a = matrix::unique_vxArray(omCreateVCOSMatrix(1, 3, "bt.Shape"));
  omSetArrayElement(a.get(), 1, bt::make("bt.Square"));
  omSetClassOfHeterogeneousArray(a.get());
  EXPECT_STREQ(omGetArrayElement(a.get(), 0)->getClass()->getName(), "bt.Blank");
  EXPECT_STREQ(omGetArrayElement(a.get(), 2)->getClass()->getName(), "bt.Blank");
  EXPECT_NE(omGetArrayElement(a.get(), 0).get(), omGetArrayElement(a.get(), 2).get()) << "one new element per gap";
  EXPECT_STREQ(vxGetClassName(a.get()), "bt.Shape");
}

TEST_F(HeterogeneousArray, OrdinaryClassesNarrowOnlyWhenAllAlike) {
  auto same = bt::column({bt::make("bt.Node"), bt::make("bt.Node")});
  omSetClassOfHeterogeneousArray(same.get());
  EXPECT_STREQ(vxGetClassName(same.get()), "bt.Node");
  auto mixed = bt::column({bt::make("bt.Node"), bt::make("bt.Plain")});
  omSetClassOfHeterogeneousArray(mixed.get());
  EXPECT_STREQ(vxGetClassName(mixed.get()), "handle");
}

TEST(ArrayForms, ExternalFormDoesNotKeepObjectsAliveAndInternalDoes) {
  COSInterfacePtr watch;
  watch.setReferenceType(COSWeakReference);
  matrix::unique_vxArray external;
  {
    COSInterfacePtr n = bt::make("bt.Node");
    watch = n.get();
    matrix::unique_vxArray cell(vxCreateCellMatrix(1, 1));
    vxSetCell(cell.get(), 0, omCreateVCOSScalar(n));
    external.reset(vcosConvertArrayToExternal(cell.get()));
    matrix::unique_vxArray internal(vcosConvertArrayToInternal(external.get(), /*copy=*/true));
    n.reset();
    cell.reset();
    EXPECT_FALSE(watch->isDestroyed()) << "the internal copy holds it";
  }
  EXPECT_TRUE(watch->isDestroyed()) << "the external form held the object strongly";
  EXPECT_TRUE(omGetArrayElement(vxGetCell(external.get(), 0), 0)->isDestroyed());
}

TEST(ArrayForms, InPlaceConversionLeavesSharedCopiesAlone) {
  COSInterfacePtr n = bt::make("bt.Node");
  auto stored = bt::arr(n);
  matrix::unique_vxArray copy(vxCreateSharedDataCopy(stored.get()));
  vcosConvertArrayToExternalInPlace(stored.get(), false);
  n.reset();
  EXPECT_FALSE(omGetArrayElement(copy.get(), 0)->isDestroyed()) << "the copy still owns the object";
}

TEST(ObjectCalls, ConstructAndCallByNameAndMissingMethods) {
  bt::setUp();
  matrix::unique_vxArray list(vxCreateCellMatrix(1, 2));
  vxSetCell(list.get(), 0, vxCreateString("Name"));
  vxSetCell(list.get(), 1, vxCreateString("Value"));
  auto title = text("Main");
  const vxArray* in[] = {list.get(), title.get()};
  matrix::unique_vxArray group(omConstructObjectWithClient("vantel.mixin.util.PropertyGroup", 2, in, COSGetPublicClient()));
  COSInterfacePtr g = omGetArrayElement(group.get(), 0);
  EXPECT_EQ(vxGetScalar(bt::getValue(g, "NumProperties").get()), 2.0);
  EXPECT_EQ(bt::getText(g, "Title"), "Main");

  vxArray* out[1] = {nullptr};
  const vxArray* self[] = {group.get()};
  EXPECT_FALSE(omCallMethod("handle", "noSuchMethod", COSGetPublicClient(), 1, out, 1, self, true));
  EXPECT_TRUE(omCallMethod("handle", "isvalid", COSGetPublicClient(), 1, out, 1, self, true));
  matrix::unique_vxArray valid(out[0]);
  EXPECT_TRUE(vxIsLogicalScalarTrue(valid.get()));
  EXPECT_EQ(bt::errorId([&] { omConstructObjectWithClient("handle", 0, nullptr, COSGetPublicClient()); }),
            "VANTEL:vcos:AbstractClass");
}

TEST(ObjectCalls, WrappedBlockLivesWithItsInstance) {
  bt::setUp();
  const int before = bt::WrappedBlock::alive;
  {
    COSInterfacePtr o = omWrapData(new bt::WrappedBlock, "bt.Wrapped");
    EXPECT_EQ(bt::WrappedBlock::alive, before + 1);
    EXPECT_NE(o->getInstanceData(COSID("bt.Wrapped")), nullptr);
  }
  EXPECT_EQ(bt::WrappedBlock::alive, before) << "the wrapped block outlived its instance";
}

TEST(ObjectCalls, LoadobjGetsASavedFormFollowedByTheObject) {
  COSInterfacePtr o = bt::make("bt.Wrapped");
  const char* fields[] = {"x"};
  matrix::unique_vxArray saved(vxCreateStructMatrix(1, 1, 1, fields));
  ASSERT_TRUE(omCallLoadobjMethod(o, saved.get(), COSDataTypePtr()));
  EXPECT_EQ(bt::lastLoadobj().inputs, 2);
  EXPECT_EQ(bt::lastLoadobj().second, o.get());
  ASSERT_TRUE(omCallLoadobjMethod(o, bt::arr(o).get(), COSDataTypePtr()));
  EXPECT_EQ(bt::lastLoadobj().inputs, 1);
  EXPECT_TRUE(bt::lastLoadobj().firstIsObjectArray);
  EXPECT_FALSE(omCallLoadobjMethod(bt::make("bt.Node"), saved.get(), COSDataTypePtr()));
}

TEST(HandleMethods, EqAndNeCompareIdentityWithScalarExpansion) {
  COSInterfacePtr x = bt::make("bt.Node"), y = bt::make("bt.Node");
  auto pair = bt::column({x, y}, "bt.Node");
  auto eq = bt::call("eq", {pair.get(), bt::arr(x).get()});
  EXPECT_TRUE(vxGetLogicals(eq.get())[0]);
  EXPECT_FALSE(vxGetLogicals(eq.get())[1]);
  auto ne = bt::call("ne", {bt::arr(y).get(), pair.get()});
  EXPECT_TRUE(vxGetLogicals(ne.get())[0]);
  EXPECT_FALSE(vxGetLogicals(ne.get())[1]);
  auto three = bt::column({x, y, x}, "bt.Node");
  EXPECT_EQ(bt::errorId([&] { bt::call("eq", {pair.get(), three.get()}); }), "VANTEL:vcos:DimensionMismatch");
}

TEST(HandleMethods, DeleteDeletesEveryLiveElement) {
  COSInterfacePtr x = bt::make("bt.Node"), y = bt::make("bt.Node");
  y->deleteObject(COSGetPublicClient());
  auto both = bt::column({x, y}, "bt.Node");
  bt::call("delete", {both.get()}, 0);
  EXPECT_TRUE(x->isDestroyed());
}

TEST(Dynamicprops, AddpropAddsToOneInstanceAndRefusesATakenName) {
  COSInterfacePtr x = bt::make("bt.Node"), y = bt::make("bt.Node");
  auto xs = bt::arr(x);
  bt::call("addprop", {xs.get(), text("Extra").get()}, 0);
  bt::setValue(x, "Extra", bt::number(3).get());
  EXPECT_EQ(vxGetScalar(bt::getValue(x, "Extra").get()), 3.0);
  EXPECT_EQ(y->findPropertyInfo(COSID("Extra")), nullptr);
  EXPECT_NE(bt::errorId([&] { bt::call("addprop", {xs.get(), text("Value").get()}, 0); }), "");
}

}  // namespace
