// The built-in functions of theme objects: the two factories, the attribute
// look-up and the single-colour override, with their argument checks.
#include <gtest/gtest.h>

#include "ThemeTestSupport.h"
#include "sgutils/themes/ThemeBuiltins.h"
#include "support/ErrorId.h"

namespace sgtest::themes {
namespace {

using graphics::datatype::RGBAColor;

class ThemeBuiltins : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { VLInitialize_sgutils(); }
};

Theme callFactory(void (*fcn)(int, vxArray*[], int, const vxArray*[])) {
  vxArray* out[1] = {nullptr};
  fcn(1, out, 0, nullptr);
  return Theme(out[0]);
}

TEST_F(ThemeBuiltins, FactoriesMakeAutomaticThemes) {
  Theme light = callFactory(&lightThemeBuiltin), dark = callFactory(&darkThemeBuiltin);
  EXPECT_TRUE(light.theme().getBaseColorStyle().isLight());
  EXPECT_TRUE(dark.theme().getBaseColorStyle().isDark());
  EXPECT_NE(light.object.get(), dark.object.get());
  matrix::unique_vxArray extra(vxCreateDoubleScalar(1));
  const vxArray* in[] = {extra.get()};
  vxArray* out[2] = {nullptr, nullptr};
  EXPECT_FALSE(errorId([&] { darkThemeBuiltin(1, out, 1, in); }).empty());
  EXPECT_FALSE(errorId([&] { lightThemeBuiltin(2, out, 0, nullptr); }).empty());
}

TEST_F(ThemeBuiltins, AttributeValueChecksItsInputs) {
  Theme dark(true);
  matrix::unique_vxArray name(vxCreateString("axesgridalpha"));
  const vxArray* in[] = {dark.array.get(), name.get()};
  vxArray* out[1] = {nullptr};
  getAttributeValue(1, out, 2, in);
  matrix::unique_vxArray value(out[0]);
  EXPECT_EQ(vxGetScalar(value.get()), 0.25);

  matrix::unique_vxArray empty(vxCreateString(""));
  const vxArray* noName[] = {dark.array.get(), empty.get()};
  EXPECT_EQ(errorId([&] { getAttributeValue(1, out, 2, noName); }), "VANTEL:graphics:themes:InvalidScalarTextInput");
  matrix::unique_vxArray number(vxCreateDoubleScalar(2));
  const vxArray* notTheme[] = {number.get(), name.get()};
  EXPECT_EQ(errorId([&] { getAttributeValue(1, out, 2, notTheme); }), "VANTEL:graphics:themes:InvalidThemeObject");
  matrix::unique_vxArray none(omCreateVCOSEmpty(GraphicsTheme::classID()));
  const vxArray* emptyTheme[] = {none.get(), name.get()};
  EXPECT_EQ(errorId([&] { getAttributeValue(1, out, 2, emptyTheme); }), "VANTEL:graphics:themes:InvalidThemeObject");
  // A deleted theme is no theme.
  Theme gone(false);
  gone.object->deleteObject(COSGetPublicClient());
  const vxArray* deleted[] = {gone.array.get(), name.get()};
  EXPECT_EQ(errorId([&] { getAttributeValue(1, out, 2, deleted); }), "VANTEL:graphics:themes:InvalidThemeObject");
  EXPECT_FALSE(errorId([&] { getAttributeValue(1, out, 1, in); }).empty());
}

TEST_F(ThemeBuiltins, OverrideWorksOnACopy) {
  Theme original(true);
  original.theme().setBackgroundColorMode(graphics::datatype::AutoManual::Manual);
  original.theme().setBackgroundColor(RGBAColor(0, 0, 1), graphics::datatype::PrivateClient);
  matrix::unique_vxArray green = row(0, 1, 0);
  const vxArray* in[] = {original.array.get(), green.get()};
  vxArray* out[1] = {nullptr};
  singleColorOverride(1, out, 2, in);
  Theme copy(out[0]);
  ASSERT_NE(copy.object.get(), original.object.get());
  EXPECT_EQ(original.theme().getOverrideColor(), nullptr);
  ASSERT_NE(copy.theme().getOverrideColor(), nullptr);
  EXPECT_EQ(*copy.theme().getOverrideColor(), RGBAColor(0, 1, 0));
  // The copy keeps the style and the manual value.
  EXPECT_TRUE(copy.theme().getBaseColorStyle().isDark());
  EXPECT_EQ(copy.theme().getBackgroundColor(), RGBAColor(0, 0, 1));
  EXPECT_EQ(copy.theme().getContainerColor(), RGBAColor(0, 1, 0));

  matrix::unique_vxArray remove(vxCreateString("remove"));
  const vxArray* clear[] = {copy.array.get(), remove.get()};
  singleColorOverride(1, out, 2, clear);
  Theme cleared(out[0]);
  EXPECT_EQ(cleared.theme().getOverrideColor(), nullptr);
  EXPECT_NE(copy.theme().getOverrideColor(), nullptr) << "the input theme was changed";

  const char* kBad = "VANTEL:graphics:themes:InvalidSingleColorOverrideInput";
  for (const char* text : {"Remove", "", "red"}) {
    matrix::unique_vxArray t(vxCreateString(text));
    const vxArray* bad[] = {original.array.get(), t.get()};
    EXPECT_EQ(errorId([&] { singleColorOverride(1, out, 2, bad); }), kBad) << text;
  }
  matrix::unique_vxArray two(vxCreateDoubleMatrix(1, 2, vxREAL));
  const vxArray* short2[] = {original.array.get(), two.get()};
  EXPECT_EQ(errorId([&] { singleColorOverride(1, out, 2, short2); }), kBad);
  matrix::unique_vxArray outOfRange = row(0, 2, 0);
  const vxArray* range[] = {original.array.get(), outOfRange.get()};
  EXPECT_EQ(errorId([&] { singleColorOverride(1, out, 2, range); }), "VANTEL:datatypes:InvalidColor");
  matrix::unique_vxArray number(vxCreateDoubleScalar(1));
  const vxArray* notTheme[] = {number.get(), green.get()};
  EXPECT_EQ(errorId([&] { singleColorOverride(1, out, 2, notTheme); }), "VANTEL:graphics:themes:InvalidThemeObject");
  EXPECT_EQ(original.theme().getOverrideColor(), nullptr);
}

}  // namespace
}  // namespace sgtest::themes
