// Answers on the operating system, the language of the environment and the
// default fonts that go with it. The locale name is taken once, when the
// library is loaded, from the environment (LC_ALL, LC_*, LANG).
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils::PlatformInfo {

// Fixed by the build: exactly one is true.
SGUTILS_API bool isWindows() noexcept;
SGUTILS_API bool isLinux() noexcept;
SGUTILS_API bool isMac() noexcept;
// Whether text is measured against the lowest common screen density; false
// on Windows, where the system's density is used.
SGUTILS_API bool useMinimumBaselinePPI() noexcept;

// The locale name begins with "ja_JP", "zh_CN" or "ko_KR".
SGUTILS_API bool isJA() noexcept;
SGUTILS_API bool isZH() noexcept;
SGUTILS_API bool isKO() noexcept;

// 9 points in Japanese, else 8.
SGUTILS_API double getDefaultFontPointSize() noexcept;
SGUTILS_API std::u16string getDefaultFontName();
// The first that applies: Japanese, Chinese, Korean, otherwise a Latin font.
SGUTILS_API std::u16string getDefaultFixedWidthFontName();

// The locale name the answers above use, and a replacement for tests.
SGUTILS_API const std::string& localeName() noexcept;
SGUTILS_API void setLocaleNameForTesting(std::string name);

}  // namespace sgutils::PlatformInfo
