#include "sgutils/themes/ThemeSettings.h"

#include <cctype>
#include <string>

#include "foundation/feature/Feature.h"
#include "foundation/feature/svFeatureEntry.h"
#include "foundation/settings/Settings.h"
#include "vx/vx.h"

namespace sgutils::themes {
namespace {

// The setting lower-cased, or empty when it is missing or cannot be read.
std::string lowerSetting(const char* group, const char* name) {
  try {
    const std::u16string value = getSettingsRoot().group(group).getUtf16(name, u"");
    // Only ASCII words are compared, so other characters need no conversion.
    std::string text;
    text.reserve(value.size());
    for (char16_t c : value) text.push_back(c < 128 ? static_cast<char>(std::tolower(c)) : '?');
    return text;
  } catch (const std::exception&) {
    return {};
  }
}

}  // namespace

void registerThemeFeatures() {
  static const bool once = [] {
    svRegisterFeature("webui", 0);
    svRegisterFeature("AutomaticFigureThemesInWebDesktop", 0);
    svRegisterFeature("EnableFigureThemesForTesting", 1);
    return true;
  }();
  (void)once;
}

bool automaticFigureThemesOn() {
  return foundation::feature::isOn("webui") && foundation::feature::isOn("AutomaticFigureThemesInWebDesktop");
}

bool anyFigureThemesOn() {
  return automaticFigureThemesOn() || foundation::feature::isOn("EnableFigureThemesForTesting");
}

BaseColorSchemeType desktopThemeSetting() {
  return lowerSetting("vantel.appearance", "CurrentTheme") == "dark" ? BaseColorSchemeType::Dark
                                                                     : BaseColorSchemeType::Light;
}

int graphicsThemeSetting() {
  const std::string text = lowerSetting("vantel.appearance.figure", "GraphicsTheme");
  return text == "light" ? 1 : text == "dark" ? 2 : 0;
}

BaseColorSchemeType computeAutoTheme(const BaseColorSchemeType& desktop) {
  switch (graphicsThemeSetting()) {
    case 1: return BaseColorSchemeType::Light;
    case 2: return BaseColorSchemeType::Dark;
    default: return desktop.isDark() ? BaseColorSchemeType::Dark : BaseColorSchemeType::Light;
  }
}

}  // namespace sgutils::themes
