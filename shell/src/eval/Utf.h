// Not installed; internal to sgshell.
// Conversions between the UTF-8 text of the language's source and output
// and the UTF-16 of char arrays.
#pragma once

#include <string>
#include <string_view>

namespace sgsh {

std::string utf8(std::u16string_view s);
std::u16string utf16(std::string_view s);

}  // namespace sgsh
