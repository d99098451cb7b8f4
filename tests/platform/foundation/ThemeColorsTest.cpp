// Theme colours: every semantic variable the themes use has a colour in both
// styles, and text stays readable against the backgrounds it is shown on.
#include <gtest/gtest.h>

#include <cmath>
#include <regex>

#include <foundation/uithemes/ThemeColors.h>

using uithemes::utils::getColor;

namespace {

// The variables that theme objects and the theme mapping table ask for.
const char* const kVariables[] = {
    "--cv-backgroundColor-input",
    "--cv-backgroundColor-primary",
    "--cv-borderColor-primary",
    "--cv-color-hyperlink",
    "--cv-color-hyperlink-visited",
    "--cv-color-primary",
    "--cv-graphics-backgroundColor-axes-primary",
    "--cv-graphics-borderColor-axes-primary",
    "--cv-graphics-borderColor-axes-quaternary",
    "--cv-graphics-colorNeutral-line-secondary",
};

double channel(const std::string& hex, int i) {
  double c = std::stoi(hex.substr(1 + 2 * i, 2), nullptr, 16) / 255.0;
  return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

// Relative luminance and contrast ratio as the accessibility guidelines define them.
double luminance(const std::string& hex) {
  return 0.2126 * channel(hex, 0) + 0.7152 * channel(hex, 1) + 0.0722 * channel(hex, 2);
}

double contrast(const char* fg, const char* bg, const char* theme) {
  double a = luminance(*getColor(fg, theme));
  double b = luminance(*getColor(bg, theme));
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

}  // namespace

TEST(ThemeColors, EveryVariableHasAColourInBothStyles) {
  const std::regex colour("#[0-9A-Fa-f]{6}");
  for (const char* theme : {"light", "dark"})
    for (const char* v : kVariables) {
      auto c = getColor(v, theme);
      ASSERT_TRUE(c.has_value()) << v << " in " << theme;
      EXPECT_TRUE(std::regex_match(*c, colour)) << v << " = " << *c;
    }
  for (const char* v : kVariables)
    EXPECT_NE(getColor(v, "light"), getColor(v, "dark")) << v << " must differ between the styles";
}

TEST(ThemeColors, DarkStyleHasDarkBackgroundsAndLightText) {
  EXPECT_LT(luminance(*getColor("--cv-backgroundColor-primary", "dark")), 0.05);
  EXPECT_GT(luminance(*getColor("--cv-color-primary", "dark")), 0.5);
  EXPECT_GT(luminance(*getColor("--cv-backgroundColor-primary", "light")), 0.8);
  EXPECT_LT(luminance(*getColor("--cv-color-primary", "light")), 0.05);
}

TEST(ThemeColors, TextMeetsContrastAgainstItsBackgrounds) {
  // Text, links and axis labels (drawn in the axes border colour, inside and
  // outside the axes): 4.5:1. Lines get the same, being the default plot colour.
  const std::pair<const char*, const char*> text[] = {
      {"--cv-color-primary", "--cv-backgroundColor-primary"},
      {"--cv-color-primary", "--cv-backgroundColor-input"},
      {"--cv-color-primary", "--cv-graphics-backgroundColor-axes-primary"},
      {"--cv-color-hyperlink", "--cv-backgroundColor-primary"},
      {"--cv-color-hyperlink", "--cv-backgroundColor-input"},
      {"--cv-color-hyperlink-visited", "--cv-backgroundColor-primary"},
      {"--cv-color-hyperlink-visited", "--cv-backgroundColor-input"},
      {"--cv-graphics-borderColor-axes-primary", "--cv-graphics-backgroundColor-axes-primary"},
      {"--cv-graphics-borderColor-axes-primary", "--cv-backgroundColor-primary"},
      {"--cv-graphics-colorNeutral-line-secondary", "--cv-graphics-backgroundColor-axes-primary"},
  };
  // Borders of controls and the grid colour: 3:1, the rule for graphical objects.
  const std::pair<const char*, const char*> borders[] = {
      {"--cv-borderColor-primary", "--cv-backgroundColor-primary"},
      {"--cv-borderColor-primary", "--cv-backgroundColor-input"},
      {"--cv-graphics-borderColor-axes-quaternary", "--cv-graphics-backgroundColor-axes-primary"},
  };
  for (const char* theme : {"light", "dark"}) {
    for (auto [fg, bg] : text) EXPECT_GE(contrast(fg, bg, theme), 4.5) << fg << " on " << bg << " (" << theme << ")";
    for (auto [fg, bg] : borders) EXPECT_GE(contrast(fg, bg, theme), 3.0) << fg << " on " << bg << " (" << theme << ")";
  }
}

TEST(ThemeColors, UnknownVariableOrThemeGivesNothing) {
  EXPECT_FALSE(getColor("--cv-no-such-variable", "light"));
  EXPECT_FALSE(getColor("--cv-color-primary", "white"));
  EXPECT_FALSE(getColor("--cv-color-primary", "Dark")) << "callers lower-case the style first";
  EXPECT_FALSE(getColor("", "light"));
  EXPECT_FALSE(getColor("variable", "light")) << "the table's header is not a variable";
}
