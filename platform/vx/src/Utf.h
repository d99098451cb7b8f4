// Not installed; internal to the array runtime.
//
// UTF-8 and UTF-16 conversions of char data. Malformed input (bad UTF-8
// sequences, unpaired surrogates) reads as U+FFFD, so text always converts.
#pragma once

#include <string>
#include <string_view>

namespace vx::impl {

std::u16string utf8ToUtf16(std::string_view in);
std::string utf16ToUtf8(std::u16string_view in);

}  // namespace vx::impl
