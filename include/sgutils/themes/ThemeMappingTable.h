// The built-in theme mapping table: for each class that takes part in
// theming, which properties follow the theme and from which attribute each
// takes its value. An attribute is a semantic variable ("--cv-...") that the
// colour service resolves, or a named attribute of the theme object.
//
// Look-up is by the exact, case-sensitive class name; there is no walk up the
// class hierarchy, so a subclass of a listed class has no built-in map. Both
// the outer and the inner maps are ordered by plain byte comparison of their
// keys, so values are applied in the byte order of the property names.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "sgutils/SgutilsExport.h"

namespace sgutils::themes {

// Property name to attribute name, in byte order of the property names.
using ThemeMap = std::map<std::string, std::string, std::less<>>;

// The row of a class, or null when the class has none. No allocation: the
// table is read in place.
SGUTILS_API const ThemeMap* findBuiltinThemeMap(std::string_view className);

// A copy of the row of a class; empty when the class has none.
SGUTILS_API ThemeMap builtinThemeMap(std::string_view className);

// The whole table, class name to row, in byte order of the class names.
SGUTILS_API const std::map<std::string, ThemeMap, std::less<>>& builtinThemeTable();

}  // namespace sgutils::themes
