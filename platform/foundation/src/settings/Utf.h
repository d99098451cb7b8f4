// Not installed; internal to sgplatform.
//
// Conversion between UTF-8 and UTF-16 for settings read as UTF-16 text.
// Malformed input becomes U+FFFD rather than an error: a settings file is
// user-editable and must never stop a read.
#pragma once

#include <string>
#include <string_view>

namespace foundation::settings::detail {

std::u16string utf8ToUtf16(std::string_view in);
std::string utf16ToUtf8(std::u16string_view in);

}  // namespace foundation::settings::detail
