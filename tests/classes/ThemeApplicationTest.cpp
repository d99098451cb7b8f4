// Themes on the object tree through the real classes: a figure's Theme
// re-colours its tree from the mapping table, manual values stay, and new or
// moved objects take the theme of the figure they join.
#include <string>
#include <utility>

#include "ClassesTestSupport.h"
#include "ThemeColorRows.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/themes/ThemeMappingTable.h"
#include "sgutils/themes/ThemeUtils.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"

namespace sgtest::classes {
namespace {

using graphics::datatype::RGBAColor;
using sgclasses::create;
using sgclasses::root;

Arr textArray(const char* s) { return Arr(vxCreateString(s)); }

// Every colour row of the object's class holds the service's value for `style`.
void expectThemed(const COSInterfacePtr& object, const char* style) {
  const auto* map = sgutils::themes::findBuiltinThemeMap(object->getClass()->getName());
  ASSERT_NE(map, nullptr);
  for (const auto& [property, attribute] : *map) {
    if (attribute.rfind("--cv-", 0) != 0) continue;
    EXPECT_EQ(row(object, property.c_str()), serviceRow(attribute, style))
        << object->getClass()->getName() << "." << property << " " << style;
    EXPECT_EQ(text(object, (property + "Mode").c_str()), "auto") << property;
  }
}

void setTheme(const COSInterfacePtr& figure, const char* name) { set(figure, "Theme", textArray(name).get()); }

TEST_F(ClassesTest, ADarkFigureGivesItsTreeTheDarkValues) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  COSInterfacePtr label = create(sgclasses::kTextClass, axes);
  COSInterfacePtr patch = create(sgclasses::kPatchClass, axes);
  const std::string lineBefore = row(line, "Color");

  setTheme(figure, "dark");
  for (const auto& o : {figure, axes, line, label, patch}) expectThemed(o, "dark");
  EXPECT_NE(row(line, "Color"), lineBefore);
  EXPECT_DOUBLE_EQ(number(axes, "GridAlpha"), 0.25);
  EXPECT_DOUBLE_EQ(number(axes, "MinorGridAlpha"), 0.25);
  // A property with no row is left alone.
  EXPECT_EQ(text(line, "LineStyle"), "-");

  setTheme(figure, "LIGHT");
  for (const auto& o : {figure, axes, line, label, patch}) expectThemed(o, "light");
  EXPECT_DOUBLE_EQ(number(axes, "GridAlpha"), 0.15);
}

TEST_F(ClassesTest, AManualValueSurvivesThemeChangesUntilItsModeIsAuto) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(red.get())[0] = 1;
  set(line, "Color", red.get());
  for (const char* style : {"dark", "light", "dark"}) {
    setTheme(figure, style);
    EXPECT_EQ(row(line, "Color"), "1.000000 0.000000 0.000000") << style;
    EXPECT_EQ(text(line, "ColorMode"), "manual");
    expectThemed(axes, style);
  }
  // Back to auto: the next theme applied takes it again.
  set(line, "ColorMode", textArray("auto").get());
  setTheme(figure, "light");
  expectThemed(line, "light");
}

TEST_F(ClassesTest, NewAndMovedObjectsTakeTheThemeOfTheirFigure) {
  COSInterfacePtr dark = create(sgclasses::kFigureClass, root());
  setTheme(dark, "dark");
  COSInterfacePtr axes = create(sgclasses::kAxesClass, dark);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  expectThemed(axes, "dark");
  expectThemed(line, "dark");

  // A whole subtree built under an unthemed figure takes the theme on moving.
  COSInterfacePtr plain = create(sgclasses::kFigureClass, root());
  COSInterfacePtr otherAxes = create(sgclasses::kAxesClass, plain);
  COSInterfacePtr otherLine = create(sgclasses::kLineClass, otherAxes);
  const std::string unthemed = row(otherLine, "Color");
  set(otherAxes, "Parent", obj(dark).get());
  expectThemed(otherAxes, "dark");
  expectThemed(otherLine, "dark");
  EXPECT_NE(row(otherLine, "Color"), unthemed);

  // A colour given at creation is the user's and stays.
  Arr green(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(green.get())[1] = 1;
  COSInterfacePtr given = create(sgclasses::kLineClass, axes);
  set(given, "Color", green.get());
  setTheme(dark, "light");
  EXPECT_EQ(row(given, "Color"), "0.000000 1.000000 0.000000");
}

// New objects find their figure's theme container, and their own mixin
// blocks, by indexes kept per class: objects of several classes made in
// turn under two figures must each take their own figure's theme and have
// their views' block, whichever class was made before them.
TEST_F(ClassesTest, ObjectsOfSeveralClassesMadeInTurnTakeTheirOwnFiguresTheme) {
  COSInterfacePtr dark = create(sgclasses::kFigureClass, root());
  COSInterfacePtr light = create(sgclasses::kFigureClass, root());
  setTheme(dark, "dark");
  setTheme(light, "light");
  COSInterfacePtr darkAxes = create(sgclasses::kAxesClass, dark);
  COSInterfacePtr lightAxes = create(sgclasses::kAxesClass, light);
  COSInterfacePtr group = create(sgclasses::kGroupClass, darkAxes);
  const char* classes[] = {sgclasses::kLineClass, sgclasses::kTextClass, sgclasses::kPatchClass};
  for (int round = 0; round < 2; ++round) {
    for (const char* cls : classes) {
      for (const auto& [parent, style] : {std::pair{darkAxes, "dark"}, std::pair{lightAxes, "light"},
                                          std::pair{group, "dark"}}) {
        COSInterfacePtr object = create(cls, parent);
        expectThemed(object, style);
        const auto* node = sgutils::blockOf<sgclasses::GraphicsNode>(object.get(), sgclasses::GraphicsNode::classID());
        ASSERT_NE(node, nullptr) << cls;
        EXPECT_NE(node->viewProperties(), nullptr) << cls;
      }
    }
  }
}

TEST_F(ClassesTest, ThemeValuesThatAreRefused) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  // Before any theme the property reads as an empty placeholder.
  Arr none = get(figure, "Theme");
  EXPECT_TRUE(vxIsEmpty(none.get()));
  EXPECT_EQ(std::string(vxGetClassName(none.get())), "vantel.graphics.GraphicsPlaceholder");

  EXPECT_EQ(sgtest::errorId([&] { setTheme(figure, "white"); }), "VANTEL:graphics:themes:UIThemeManagerDarkOrLight");
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  EXPECT_EQ(sgtest::errorId([&] { set(figure, "Theme", obj(axes).get()); }), "VANTEL:graphics:themes:InvalidThemeObject");
  Arr numbers(vxCreateDoubleMatrix(1, 3, vxREAL));
  EXPECT_EQ(sgtest::errorId([&] { set(figure, "Theme", numbers.get()); }), "VANTEL:graphics:themes:InvalidThemeObject");
  EXPECT_TRUE(vxIsEmpty(get(figure, "Theme").get()));

  // A theme object itself is taken as it is; empty takes it away again and
  // leaves the values where they are.
  setTheme(figure, "dark");
  Arr theme = get(figure, "Theme");
  ASSERT_EQ(vxGetNumberOfElements(theme.get()), 1u);
  const std::string darkAxes = row(axes, "Color");
  set(figure, "Theme", Arr(vxCreateDoubleMatrix(0, 0, vxREAL)).get());
  EXPECT_TRUE(vxIsEmpty(get(figure, "Theme").get()));
  EXPECT_EQ(row(axes, "Color"), darkAxes);
  set(figure, "Theme", theme.get());
  EXPECT_EQ(omGetArrayElement(get(figure, "Theme").get(), 0), omGetArrayElement(theme.get(), 0));
}

TEST_F(ClassesTest, SetPVPairSkipsWhatItMustAndWritesTheInternalFace) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  using sgutils::themes::setPVPair;
  Arr blue(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(blue.get())[2] = 1;
  EXPECT_TRUE(setPVPair(line, "Color", blue.get(), false));
  EXPECT_EQ(text(line, "ColorMode"), "auto");
  EXPECT_FALSE(setPVPair(line, "Color", blue.get(), false));  // unchanged
  EXPECT_FALSE(setPVPair(line, "Color", textArray("").get(), false));
  EXPECT_FALSE(setPVPair(line, "Color", nullptr, false));
  EXPECT_FALSE(setPVPair(line, "NoSuchProperty", blue.get(), false));
  // Manual: skipped unless the caller overrides manual values.
  set(line, "ColorMode", textArray("manual").get());
  Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(red.get())[0] = 1;
  EXPECT_FALSE(setPVPair(line, "Color", red.get(), false));
  EXPECT_TRUE(setPVPair(line, "Color", red.get(), true));
  EXPECT_EQ(row(line, "Color"), "1.000000 0.000000 0.000000");
  // An object without a theme row, or no valid theme, is nothing to do.
  EXPECT_TRUE(sgutils::themes::applyThemeValues(line, sgutils::themes::ThemeInfo(), false));
}

}  // namespace
}  // namespace sgtest::classes
