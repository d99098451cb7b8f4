// The class-name maps: their order, their content and the look-up by a walk
// that default-value names rely on.
#include <gtest/gtest.h>

#include <cctype>
#include <set>
#include <string>

#include "sgdatatypes/ClassNameMap.h"

using sgdatatypes::typemap::getClassNameMap;
using sgdatatypes::typemap::getReverseClassNameMap;

namespace {

// The walk of a default-name parse: the first key that `rest` begins with.
std::string firstFit(const std::string& rest) {
  for (const auto& [shortName, fullName] : getClassNameMap())
    if (rest.starts_with(shortName)) return fullName;
  return "";
}

TEST(ClassNameMapOrder, LongerKeyBeforeEveryKeyThatBeginsIt) {
  for (const auto* map : {&getClassNameMap(), &getReverseClassNameMap()}) {
    std::set<std::string> seen;
    for (const auto& [key, value] : *map) {
      for (const std::string& earlier : seen)
        EXPECT_FALSE(key.starts_with(earlier) && key != earlier) << key << " comes after " << earlier;
      seen.insert(key);
    }
    // Keys run from high to low byte value.
    std::string previous;
    for (const auto& [key, value] : *map) {
      if (!previous.empty()) {
        EXPECT_GE(previous, key);
      }
      previous = key;
    }
  }
}

TEST(ClassNameMapOrder, WalkFindsTheLongestShortName) {
  EXPECT_EQ(firstFit("linecolor"), "vantel.graphics.primitive.Line");
  EXPECT_EQ(firstFit("lineshapecolor"), "vantel.graphics.shape.Line");
  EXPECT_EQ(firstFit("axescolor"), "vantel.graphics.axis.Axes");
  EXPECT_EQ(firstFit("polaraxesrcolor"), "vantel.graphics.axis.PolarAxes");
  EXPECT_EQ(firstFit("textboxshapecolor"), "vantel.graphics.shape.TextBox");
  EXPECT_EQ(firstFit("histogram2edgecolor"), "vantel.graphics.chart.primitive.Histogram2");
  EXPECT_EQ(firstFit("histogramedgecolor"), "vantel.graphics.chart.primitive.Histogram");
  EXPECT_EQ(firstFit("nosuchclassfoo"), "");
}

TEST(ClassNameMapContent, ClassesOfTheTreeAndTheThemeTable) {
  const auto& m = getClassNameMap();
  auto fullOf = [&](const char* s) {
    auto it = m.find(s);
    return it == m.end() ? std::string() : it->second;
  };
  EXPECT_EQ(fullOf("root"), "vantel.ui.Root");
  EXPECT_EQ(fullOf("figure"), "vantel.ui.Figure");
  EXPECT_EQ(fullOf("axes"), "vantel.graphics.axis.Axes");
  EXPECT_EQ(fullOf("line"), "vantel.graphics.primitive.Line");
  EXPECT_EQ(fullOf("text"), "vantel.graphics.primitive.Text");
  EXPECT_EQ(fullOf("group"), "vantel.graphics.primitive.Group");
  EXPECT_EQ(fullOf("contextmenu"), "vantel.ui.container.ContextMenu");
  EXPECT_EQ(fullOf("uiaxes"), "vantel.ui.control.UIAxes");
  EXPECT_EQ(fullOf("uicontainer"), "vantel.ui.container.internal.UIContainer");
}

TEST(ClassNameMapContent, OneShortNamePerClassBothWays) {
  const auto& forward = getClassNameMap();
  const auto& reverse = getReverseClassNameMap();
  ASSERT_EQ(forward.size(), reverse.size());
  for (const auto& [shortName, fullName] : forward) {
    EXPECT_EQ(forward.count(shortName), 1u) << shortName;
    EXPECT_EQ(reverse.count(fullName), 1u) << fullName;
    auto back = reverse.find(fullName);
    ASSERT_NE(back, reverse.end());
    EXPECT_EQ(back->second, shortName);
    for (char c : shortName) EXPECT_FALSE(std::isupper(static_cast<unsigned char>(c))) << shortName;
    // A full name splits into a package and a class at its last dot.
    EXPECT_NE(fullName.rfind('.'), std::string::npos) << fullName;
  }
}

}  // namespace
