// Entry points of the settings service:
//     getSettingsRoot().group("vantel.appearance").getUtf16("CurrentTheme", u"")
//     getSettingsByFullName("vantel.appearance.figure.GraphicsTheme").get()
#pragma once

#include <string_view>

#include "foundation/PlatformExport.h"
#include "foundation/settings/Setting.h"
#include "foundation/settings/SettingsGroup.h"
#include "foundation/settings/SettingsStore.h"

// The group at the top of every setting.
FOUNDATION_API foundation::settings::SettingsGroup getSettingsRoot();

// The setting of this full name; the group is everything before the last dot.
// Raises "VANTEL:settings:InvalidName" for a name without a group.
FOUNDATION_API foundation::settings::Setting getSettingsByFullName(std::string_view fullName);
