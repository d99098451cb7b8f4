// Conversions between UTF-8 (the text of sources, files and output) and
// UTF-16 (the storage of char arrays and settings read as wide text).
// Malformed input (bad UTF-8 sequences, unpaired surrogates) reads as U+FFFD,
// so a conversion never fails: text from a user-edited file or a script must
// never stop a read.
#pragma once

#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"

namespace foundation::text {

FOUNDATION_API std::u16string utf8ToUtf16(std::string_view in);
FOUNDATION_API std::string utf16ToUtf8(std::u16string_view in);

}  // namespace foundation::text
