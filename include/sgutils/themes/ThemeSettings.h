// Whether figure themes are on, and light or dark in automatic mode, from
// three features and two appearance settings:
//   "vantel.appearance.CurrentTheme"           the desktop's theme
//   "vantel.appearance.figure.GraphicsTheme"   the figures' own: "light",
//                                              "dark", or anything else (auto)
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/themes/BaseColorSchemeType.h"

namespace sgutils::themes {

// Registers "webui", "AutomaticFigureThemesInWebDesktop" (both off) and
// "EnableFigureThemesForTesting" (on: this build has no desktop of its own,
// so a theme set by hand always applies). Once per process.
SGUTILS_API void registerThemeFeatures();

// "webui" and "AutomaticFigureThemesInWebDesktop" both on.
SGUTILS_API bool automaticFigureThemesOn();
// Automatic themes, or "EnableFigureThemesForTesting".
SGUTILS_API bool anyFigureThemesOn();

// The desktop setting: dark for "dark" in any case, else light (also when
// the read fails).
SGUTILS_API BaseColorSchemeType desktopThemeSetting();
// The graphics setting: 1 for "light", 2 for "dark" (any case), 0 otherwise.
SGUTILS_API int graphicsThemeSetting();
// Light or dark in automatic mode: the graphics setting when it names one,
// else the desktop's (white counts as light).
SGUTILS_API BaseColorSchemeType computeAutoTheme(const BaseColorSchemeType& desktop);

}  // namespace sgutils::themes
