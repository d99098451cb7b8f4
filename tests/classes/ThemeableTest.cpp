// Per-object theme mappings and the resolved values a theme keeps, through
// the real classes.
#include <string>

#include "ClassesTestSupport.h"
#include "ThemeColorRows.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/objects/Themeable.gen.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "sgutils/themes/ThemeUtils.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"

namespace sgtest::classes {
namespace {

using graphics::datatype::RGBAColor;
using graphics::mixin::Themeable;
using graphics::theme::GraphicsTheme;
using sgclasses::create;
using sgclasses::root;

constexpr const char* kPrimary = "--cv-color-primary";
constexpr const char* kLineSecondary = "--cv-graphics-colorNeutral-line-secondary";

Arr textArray(const char* s) { return Arr(vxCreateString(s)); }

Themeable& themeableOf(const COSInterfacePtr& object) {
  Themeable* block = Themeable::fromObject(object.get());
  EXPECT_NE(block, nullptr);
  return *block;
}

TEST_F(ClassesTest, CustomMappingsLieOverTheClassRowOnePropertyAtATime) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  Themeable& t = themeableOf(line);
  const sgutils::themes::ThemeMap rowOnly = sgutils::themes::builtinThemeMap(line->getClass()->getName());
  EXPECT_EQ(t.getCombinedThemeAttributeMap(line.get()), rowOnly);

  t.addCustomThemePropertyMapping("Color", kPrimary);
  t.addCustomThemePropertyMapping("MarkerFaceColor", kLineSecondary);
  sgutils::themes::ThemeMap combined = t.getCombinedThemeAttributeMap(line.get());
  EXPECT_EQ(combined.size(), rowOnly.size() + 1);
  EXPECT_EQ(combined.at("Color"), kPrimary);
  EXPECT_EQ(t.getCustomThemePropertyMapping("LineWidth"), "");
  EXPECT_EQ(t.getCombinedThemePropertyMapping(line.get(), "MarkerFaceColor"), kLineSecondary);

  // A theme change applies the combined map, and only to this line.
  COSInterfacePtr plain = create(sgclasses::kLineClass, axes);
  set(figure, "Theme", textArray("dark").get());
  EXPECT_EQ(row(line, "Color"), serviceRow(kPrimary, "dark"));
  EXPECT_EQ(row(line, "MarkerFaceColor"), serviceRow(kLineSecondary, "dark"));
  EXPECT_EQ(row(plain, "Color"), serviceRow(kLineSecondary, "dark"));
  EXPECT_EQ(text(plain, "MarkerFaceColor"), "none");

  // Taking a custom mapping away brings the row back at the next change.
  t.removeCustomThemePropertyMapping("Color");
  t.removeCustomThemePropertyMapping("NotThere");
  set(figure, "Theme", textArray("light").get());
  EXPECT_EQ(row(line, "Color"), serviceRow(kLineSecondary, "light"));
  EXPECT_EQ(row(line, "MarkerFaceColor"), serviceRow(kLineSecondary, "light"));
}

TEST_F(ClassesTest, TheMappingsStructureReplacesTheCustomMappingsAndAppliesNothing) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  set(figure, "Theme", textArray("dark").get());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  Themeable& t = themeableOf(line);
  t.addCustomThemePropertyMapping("LineWidth", "Nothing");
  const std::string before = row(line, "Color");

  const char* fields[] = {"Color", "MarkerEdgeColor"};
  Arr given(vxCreateStructMatrix(1, 1, 2, fields));
  vxSetField(given.get(), 0, "Color", vxCreateString(kPrimary));
  vxSetField(given.get(), 0, "MarkerEdgeColor", vxCreateDoubleScalar(1));  // not text: dropped
  set(line, "CustomThemePropertyMappings", given.get());
  EXPECT_EQ(t.getCustomThemePropertyMapping("LineWidth"), "");
  EXPECT_EQ(t.getCustomThemePropertyMapping("Color"), kPrimary);
  EXPECT_EQ(t.getCustomThemePropertyMapping("MarkerEdgeColor"), "");
  EXPECT_EQ(row(line, "Color"), before);

  Arr read = get(line, "CustomThemePropertyMappings");
  ASSERT_TRUE(vxIsStruct(read.get()));
  ASSERT_EQ(vxGetNumberOfFields(read.get()), 1);
  EXPECT_STREQ(vxGetFieldNameByNumber(read.get(), 0), "Color");

  set(line, "CustomThemePropertyMappings", Arr(vxCreateDoubleScalar(0)).get());
  EXPECT_FALSE(t.hasCustomThemePropertyMappings());
}

TEST_F(ClassesTest, AThemeResolvesItsAttributesAfreshOnceItChangesInPlace) {
  Arr made(GraphicsTheme::builtinThemeFactory(true));
  COSInterfacePtr object = omGetArrayElement(made.get(), 0);
  GraphicsTheme* theme = GraphicsTheme::fromObject(object);
  ASSERT_NE(theme, nullptr);
  const vxArray* dark = theme->resolvedThemeAttributeValue(kPrimary);
  EXPECT_EQ(theme->resolvedThemeAttributeValue(kPrimary), dark);  // kept
  set(object, "BaseColorStyle", textArray("light").get());
  const vxArray* light = theme->resolvedThemeAttributeValue(kPrimary);
  ASSERT_EQ(vxGetNumberOfElements(light), 3u);
  const RGBAColor expected(*uithemes::utils::getColor(kPrimary, "light"));
  EXPECT_DOUBLE_EQ(vxGetPr(light)[0], expected.red());
  const RGBAColor red(1, 0, 0);
  theme->singleColorThemeOverride(&red);
  EXPECT_DOUBLE_EQ(vxGetPr(theme->resolvedThemeAttributeValue(kPrimary))[0], 1.0);
  theme->singleColorThemeOverride(nullptr);
}

}  // namespace
}  // namespace sgtest::classes
