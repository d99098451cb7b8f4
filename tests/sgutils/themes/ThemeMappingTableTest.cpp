// The built-in theme mapping table: its size, how often each attribute is
// used (an independent check that every row was transcribed), and the
// look-up rules: exact class name, no walk up the hierarchy, byte order.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "sgutils/themes/ThemeMappingTable.h"

namespace sgtest::themes {
namespace {

using sgutils::themes::builtinThemeMap;
using sgutils::themes::builtinThemeTable;
using sgutils::themes::findBuiltinThemeMap;

TEST(ThemeMappingTable, ClassRowAndAttributeCounts) {
  const auto& table = builtinThemeTable();
  EXPECT_EQ(table.size(), 67u);
  std::size_t rows = 0;
  std::map<std::string, int> perAttribute;
  for (const auto& [cls, map] : table) {
    EXPECT_FALSE(map.empty()) << cls;
    rows += map.size();
    for (const auto& [property, attribute] : map) ++perAttribute[attribute];
  }
  EXPECT_EQ(rows, 120u);
  const std::map<std::string, int> expected = {
      {"--cv-color-primary", 35},
      {"--cv-graphics-colorNeutral-line-secondary", 20},
      {"--cv-backgroundColor-input", 13},
      {"--cv-backgroundColor-primary", 12},
      {"--cv-graphics-borderColor-axes-primary", 11},
      {"--cv-graphics-borderColor-axes-quaternary", 6},
      {"--cv-graphics-backgroundColor-axes-primary", 5},
      {"AxesGridAlpha", 3},
      {"AxesMinorGridAlpha", 3},
      {"ContainerColor", 3},
      {"BaseFontName", 2},
      {"ContinuousColorList", 2},
      {"DiscreteColorList", 2},
      {"--cv-borderColor-primary", 1},
      {"--cv-color-hyperlink", 1},
      {"--cv-color-hyperlink-visited", 1},
  };
  EXPECT_EQ(perAttribute, expected);
}

TEST(ThemeMappingTable, LookUpIsExactWithNoHierarchyWalk) {
  const auto* line = findBuiltinThemeMap("vantel.graphics.primitive.Line");
  ASSERT_NE(line, nullptr);
  ASSERT_EQ(line->size(), 1u);
  EXPECT_EQ(line->at("Color"), "--cv-graphics-colorNeutral-line-secondary");
  // Case matters, and neither a prefix nor a subclass name finds the row.
  EXPECT_EQ(findBuiltinThemeMap("vantel.graphics.primitive.line"), nullptr);
  EXPECT_EQ(findBuiltinThemeMap("vantel.graphics.primitive"), nullptr);
  EXPECT_EQ(findBuiltinThemeMap("vantel.graphics.primitive.LineSubclass"), nullptr);
  EXPECT_TRUE(builtinThemeMap("no.such.Class").empty());
  // The copy is a copy: changing it leaves the table alone.
  auto copy = builtinThemeMap("vantel.ui.Figure");
  copy["Color"] = "changed";
  EXPECT_EQ(findBuiltinThemeMap("vantel.ui.Figure")->at("Color"), "--cv-backgroundColor-primary");
}

TEST(ThemeMappingTable, RowsAreInByteOrderOfPropertyNames) {
  // Declared Color, RColor, ThetaColor, GridColor, ...: read in byte order,
  // upper case before lower case.
  std::vector<std::string> order;
  for (const auto& [property, attribute] : *findBuiltinThemeMap("vantel.graphics.axis.PolarAxes"))
    order.push_back(property);
  EXPECT_EQ(order, (std::vector<std::string>{"Color", "GridAlpha", "GridColor", "MinorGridAlpha",
                                             "MinorGridColor", "RColor", "ThetaColor"}));
}

TEST(ThemeMappingTable, RowsThatShareOrDifferOnPurpose) {
  // The two axes classes carry the same eight rows; polar axes the same grid
  // rows with R and Theta colours in place of the three axis colours.
  const auto& axes = *findBuiltinThemeMap("vantel.graphics.axis.Axes");
  EXPECT_EQ(axes.size(), 8u);
  EXPECT_EQ(axes, *findBuiltinThemeMap("vantel.ui.control.UIAxes"));
  const auto& polar = *findBuiltinThemeMap("vantel.graphics.axis.PolarAxes");
  for (const char* p : {"Color", "GridColor", "GridAlpha", "MinorGridColor", "MinorGridAlpha"})
    EXPECT_EQ(polar.at(p), axes.at(p)) << p;
  EXPECT_EQ(polar.count("XColor"), 0u);
  EXPECT_EQ(polar.at("RColor"), axes.at("XColor"));
  // The same property through a named attribute of the theme object, or
  // straight to the colour service.
  EXPECT_EQ(findBuiltinThemeMap("vantel.ui.container.internal.UIContainer")->at("BackgroundColor"), "ContainerColor");
  EXPECT_EQ(findBuiltinThemeMap("vantel.ui.container.Panel")->at("BackgroundColor"), "--cv-backgroundColor-primary");
  // Colour lists are themed on a few classes only.
  std::vector<std::string> colormap, colorOrder;
  for (const auto& [cls, map] : builtinThemeTable()) {
    if (map.count("Colormap")) colormap.push_back(cls);
    if (map.count("ColorOrder")) colorOrder.push_back(cls);
  }
  EXPECT_EQ(colormap, (std::vector<std::string>{"vantel.graphics.primitive.canvas.HTMLCanvas",
                                                "vantel.graphics.primitive.canvas.JavaCanvas"}));
  EXPECT_EQ(colorOrder, (std::vector<std::string>{"vantel.graphics.axis.colorspace.MapColorSpace",
                                                  "vantel.graphics.chart.BubbleCloud"}));
  EXPECT_EQ(findBuiltinThemeMap("vantel.graphics.primitive.Patch")->at("FaceVertexCData"),
            "--cv-graphics-colorNeutral-line-secondary");
}

}  // namespace
}  // namespace sgtest::themes
