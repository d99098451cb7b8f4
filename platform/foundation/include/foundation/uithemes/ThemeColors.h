// The theme colour service: the colour that a semantic colour variable
// ("--cv-color-primary") has in the light or the dark style, from the table
// compiled into the library (resources/themes/colors.tsv).
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PlatformExport.h"

namespace uithemes::utils {

// "#RRGGBB" for a known variable and a theme of "light" or "dark" (exactly,
// lower case); empty for anything else.
FOUNDATION_API std::optional<std::string> getColor(std::string_view variable, std::string_view theme);

// Every variable the table answers, sorted.
FOUNDATION_API std::vector<std::string> colorVariables();

}  // namespace uithemes::utils
