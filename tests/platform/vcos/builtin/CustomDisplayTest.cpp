// The default display of "vantel.mixin.CustomDisplay" and its pieces: the
// form chosen per array, a subclass overriding one piece, and the helpers.
#include <gtest/gtest.h>

#include "BuiltinTestSupport.h"
#include "foundation/io/OutputCapture.h"
#include "foundation/io/Printing.h"

using bt::text;

namespace {

class CustomDisplayTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bt::setUp();
    oldHot_ = services::io::setPrintfHot(false);
  }
  void TearDown() override { services::io::setPrintfHot(oldHot_); }

  static COSInterfacePtr shown(const char* name, double value) {
    COSInterfacePtr o = bt::make("bt.Shown");
    bt::setValue(o, "Name", text(name).get());
    bt::setValue(o, "Value", bt::number(value).get());
    return o;
  }
  static std::string display(const vxArray* a) {
    services::io::OutputCapture capture;
    bt::call("disp", {a}, 0);
    return capture.text();
  }
  bool oldHot_ = false;
};

TEST_F(CustomDisplayTest, ScalarShowsEachPropertyWithItsValue) {
  auto a = bt::arr(shown("first", 2.5));
  EXPECT_EQ(display(a.get()),
            "  bt.Shown with properties:\n\n"
            "     Name: 'first'\n"
            "    Value: 2.5\n\n");
}

TEST_F(CustomDisplayTest, SubclassReplacesOnePieceAndKeepsTheRest) {
  COSInterfacePtr o = bt::make("bt.Footed");
  bt::setValue(o, "Name", text("f").get());
  EXPECT_EQ(display(bt::arr(o).get()),
            "  bt.Footed with properties:\n\n"
            "     Name: 'f'\n"
            "    Value: 0\n\n"
            "  (footer)\n");
}

TEST_F(CustomDisplayTest, ArraysListNamesAndDeletedScalarSaysSo) {
  auto pair = bt::column({shown("a", 1), shown("b", 2)}, "bt.Shown");
  EXPECT_EQ(display(pair.get()), "  2x1 bt.Shown array with properties:\n\n    Name\n    Value\n\n");
  auto none = matrix::unique_vxArray(omCreateVCOSMatrix(0, 3, "bt.Shown"));
  EXPECT_EQ(display(none.get()), "  0x3 empty bt.Shown array with properties:\n\n    Name\n    Value\n\n");
  COSInterfacePtr gone = shown("c", 3);
  gone->deleteObject(COSGetPublicClient());
  EXPECT_EQ(display(bt::arr(gone).get()), "  handle to deleted bt.Shown\n\n");
}

TEST_F(CustomDisplayTest, GroupsFromAStructShowItsValuesUnderTheTitle) {
  auto a = bt::arr(shown("x", 1));
  const char* fields[] = {"Shown", "Count"};
  matrix::unique_vxArray s(vxCreateStructMatrix(1, 1, 2, fields));
  vxSetField(s.get(), 0, "Shown", vxCreateString("yes"));
  vxSetField(s.get(), 0, "Count", vxCreateDoubleScalar(3));
  auto title = text("Summary");
  const vxArray* in[] = {s.get(), title.get()};
  matrix::unique_vxArray group(
      omConstructObjectWithClient("vantel.mixin.util.PropertyGroup", 2, in, COSGetPublicClient()));
  services::io::OutputCapture capture;
  const vxArray* args[] = {a.get(), group.get()};
  ASSERT_TRUE(omCallMethod("vantel.mixin.CustomDisplay", "displayPropertyGroups", COSGetPublicClient(), 0, nullptr,
                           2, args, false));
  EXPECT_EQ(capture.text(), "   Summary\n    Shown: 'yes'\n    Count: 3\n\n");
}

TEST_F(CustomDisplayTest, HelpersGiveDimensionsAndHeaderClassName) {
  auto cube = matrix::unique_vxArray(vxCreateNumericArray(3, std::array<vxSize, 3>{2, 2, 2}.data(), vxDOUBLE_CLASS, vxREAL));
  const vxArray* in[] = {cube.get()};
  vxArray* out[1] = {nullptr};
  omCallMethod("vantel.mixin.CustomDisplay", "convertDimensionsToString", COSGetPublicClient(), 1, out, 1, in, false);
  EXPECT_EQ(vxArrayToStdString(matrix::unique_vxArray(out[0]).get()), "2x2x2");

  auto a = bt::arr(shown("x", 1));
  const vxArray* self[] = {a.get()};
  services::io::setPrintfHot(true);
  omCallMethod("vantel.mixin.CustomDisplay", "getClassNameForHeader", COSGetPublicClient(), 1, out, 1, self, false);
  EXPECT_EQ(vxArrayToStdString(matrix::unique_vxArray(out[0]).get()),
            "<a href=\"vantel:helpPopup bt.Shown\" style=\"font-weight:bold\">Shown</a>");
}

TEST_F(CustomDisplayTest, BadGroupsAndWrongFormsRaise) {
  auto a = bt::arr(shown("x", 1));
  auto notGroups = bt::number(1);
  const vxArray* args[] = {a.get(), notGroups.get()};
  EXPECT_EQ(bt::errorId([&] {
              omCallMethod("vantel.mixin.CustomDisplay", "displayPropertyGroups", COSGetPublicClient(), 0, nullptr, 2,
                           args, false);
            }),
            "VANTEL:vcos:display:BadPropertyGroup");
  EXPECT_EQ(bt::errorId([&] { bt::call("displayEmptyObject", {a.get()}, 0); }), "VANTEL:vcos:display:NotEmpty");
  matrix::unique_vxArray list(vxCreateCellMatrix(1, 1));
  vxSetCell(list.get(), 0, vxCreateDoubleScalar(1));
  const vxArray* in[] = {list.get()};
  EXPECT_EQ(bt::errorId([&] {
              omConstructObjectWithClient("vantel.mixin.util.PropertyGroup", 1, in, COSGetPublicClient());
            }),
            "VANTEL:vcos:PropertyGroup:BadPropertyList");
}

}  // namespace
