// Light or dark in automatic mode from the two appearance settings, and the
// features that switch figure themes on.
#include <gtest/gtest.h>

#include "foundation/feature/Feature.h"
#include "foundation/settings/Settings.h"
#include "sgutils/sgutils.h"
#include "sgutils/themes/ThemeSettings.h"

namespace sgtest::themes {
namespace {

using sgutils::BaseColorSchemeType;
using namespace sgutils::themes;

class ThemeSettings : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { VLInitialize_sgutils(); }
  void TearDown() override {
    desktop().remove("CurrentTheme");
    graphics().remove("GraphicsTheme");
  }
  static foundation::settings::SettingsGroup desktop() { return getSettingsRoot().group("vantel.appearance"); }
  static foundation::settings::SettingsGroup graphics() {
    return getSettingsRoot().group("vantel.appearance.figure");
  }
  static bool autoIsDark() { return computeAutoTheme(desktopThemeSetting()).isDark(); }
};

TEST_F(ThemeSettings, TheGraphicsSettingWinsAndCaseDoesNotMatter) {
  EXPECT_FALSE(autoIsDark());  // nothing set: light
  desktop().set("CurrentTheme", "DARK");
  EXPECT_TRUE(desktopThemeSetting().isDark());
  EXPECT_TRUE(autoIsDark());
  graphics().set("GraphicsTheme", "Light");
  EXPECT_EQ(graphicsThemeSetting(), 1);
  EXPECT_FALSE(autoIsDark());
  desktop().set("CurrentTheme", "light");
  graphics().set("GraphicsTheme", "dark");
  EXPECT_TRUE(autoIsDark());
  // "auto" and unknown words leave it to the desktop.
  for (const char* word : {"auto", "white", ""}) {
    graphics().set("GraphicsTheme", word);
    EXPECT_EQ(graphicsThemeSetting(), 0) << word;
    EXPECT_FALSE(autoIsDark()) << word;
  }
  // A white desktop counts as light.
  EXPECT_FALSE(computeAutoTheme(BaseColorSchemeType(BaseColorSchemeType::White)).isDark());
  // Only the word itself: a longer text or a non-ASCII look-alike is light.
  desktop().setUtf16("CurrentTheme", u"d\u0161rk");
  EXPECT_FALSE(desktopThemeSetting().isDark());
}

TEST_F(ThemeSettings, AutomaticThemesNeedBothFeatures) {
  EXPECT_FALSE(automaticFigureThemesOn());
  EXPECT_TRUE(anyFigureThemesOn());
  foundation::feature::set("webui", 1);
  EXPECT_FALSE(automaticFigureThemesOn());
  foundation::feature::set("AutomaticFigureThemesInWebDesktop", 1);
  EXPECT_TRUE(automaticFigureThemesOn());
  foundation::feature::set("EnableFigureThemesForTesting", 0);
  EXPECT_TRUE(anyFigureThemesOn());
  foundation::feature::set("webui", 0);
  EXPECT_FALSE(anyFigureThemesOn());
  foundation::feature::set("AutomaticFigureThemesInWebDesktop", 0);
  foundation::feature::set("EnableFigureThemesForTesting", 1);
}

}  // namespace
}  // namespace sgtest::themes
