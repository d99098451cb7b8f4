// Per-object theme mappings and the resolved values a theme keeps, through
// the real classes.
#include <string>
#include <string_view>

#include "ClassesTestSupport.h"
#include "ThemeColorRows.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/objects/Line.gen.h"
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

// The class-method layer: a class that overrides "getThemeMap" takes only
// what the method gives (the axes adds its colour order to its table row);
// a custom mapping still wins over it, and the table itself is unchanged.
TEST_F(ClassesTest, AClassThemeMapMethodReplacesTheTableRow) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  const sgutils::themes::ThemeMap row = sgutils::themes::builtinThemeMap(axes->getClass()->getName());
  ASSERT_FALSE(row.empty());
  EXPECT_EQ(row.count("ColorOrder"), 0u);
  const sgutils::themes::ThemeMap classMap = Themeable::getThemeMap(axes->getClass());
  EXPECT_EQ(classMap.size(), row.size() + 1);
  EXPECT_EQ(classMap.at("ColorOrder"), "DiscreteColorList");
  EXPECT_EQ(Themeable::getThemeMap(std::string_view(axes->getClass()->getName())), classMap);
  // A class without an override keeps its row; a null class has no map.
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  EXPECT_EQ(Themeable::getThemeMap(line->getClass()), sgutils::themes::builtinThemeMap(line->getClass()->getName()));
  EXPECT_TRUE(Themeable::getThemeMap(static_cast<const COSClass*>(nullptr)).empty());

  Themeable& t = themeableOf(axes);
  EXPECT_EQ(t.getCombinedThemePropertyMapping(axes.get(), "ColorOrder"), "DiscreteColorList");
  t.addCustomThemePropertyMapping("ColorOrder", "DiscreteColorListExtended");
  set(figure, "Theme", textArray("dark").get());
  EXPECT_EQ(vxGetM(get(axes, "ColorOrder").get()), 12u);
  t.removeCustomThemePropertyMapping("ColorOrder");
  set(figure, "Theme", textArray("light").get());
  Arr order = get(axes, "ColorOrder");
  ASSERT_EQ(vxGetM(order.get()), 7u);
  EXPECT_DOUBLE_EQ(vxGetPr(order.get())[7], 0.447);  // "gem": the green of #0072BD
}

// A plotted line's colour is worked out from its series index and its axes'
// colour order, on a theme change and when its mode goes back to auto; it
// does not depend on the order of the walk reaching the axes first.
TEST_F(ClassesTest, ASeriesLineTakesItsRowOfTheThemedColourOrder) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  Arr nine(vxCreateDoubleScalar(9));  // past the end of 7 rows: row 2
  set(line, "SeriesIndex", nine.get());
  set(figure, "Theme", textArray("dark").get());
  const RGBAColor glow2 = RGBAColor(std::string_view("#F57729"));
  Arr c = get(line, "Color");
  EXPECT_NEAR(vxGetPr(c.get())[0], glow2.red(), 1e-3);
  EXPECT_NEAR(vxGetPr(c.get())[2], glow2.blue(), 1e-3);
  // Without an axes parent nothing is worked out: the theme's line colour.
  EXPECT_EQ(sgclasses::Line::seriesColor(axes.get()), nullptr);
  Arr zero(vxCreateDoubleScalar(0));
  set(line, "SeriesIndex", zero.get());
  Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(red.get())[0] = 1;
  set(line, "Color", red.get());
  set(line, "ColorMode", textArray("auto").get());
  EXPECT_EQ(row(line, "Color"), serviceRow(kLineSecondary, "dark"));
}

}  // namespace
}  // namespace sgtest::classes
