#include "sgutils/services/PlatformInfo.h"

#include <locale>
#include <stdexcept>
#include <string_view>

namespace sgutils::PlatformInfo {

namespace {

// The environment's locale; an unknown name in the environment counts as
// the plain "C" locale.
std::string environmentLocale() {
  try {
    return std::locale("").name();
  } catch (const std::runtime_error&) {
    return "C";
  }
}

std::string& locale() {
  static std::string name = environmentLocale();
  return name;
}

// Taken at load, so that a later change of the process's locale does not
// change the answers.
[[maybe_unused]] const bool takenAtLoad = (locale(), true);

bool localeBeginsWith(std::string_view five) noexcept { return std::string_view(locale()).substr(0, 5) == five; }

}  // namespace

bool isWindows() noexcept {
#if defined(_WIN32)
  return true;
#else
  return false;
#endif
}

bool isMac() noexcept {
#if defined(__APPLE__)
  return true;
#else
  return false;
#endif
}

bool isLinux() noexcept { return !isWindows() && !isMac(); }

bool useMinimumBaselinePPI() noexcept { return !isWindows(); }

bool isJA() noexcept { return localeBeginsWith("ja_JP"); }
bool isZH() noexcept { return localeBeginsWith("zh_CN"); }
bool isKO() noexcept { return localeBeginsWith("ko_KR"); }

double getDefaultFontPointSize() noexcept { return isJA() ? 9.0 : 8.0; }

std::u16string getDefaultFontName() { return isJA() ? u"MS UI Gothic" : u"MS Sans Serif"; }

std::u16string getDefaultFixedWidthFontName() {
  if (isJA()) return u"\uFF2D\uFF33 \u30B4\u30B7\u30C3\u30AF";  // full-width "MS" and "Gothic" in katakana
  if (isZH()) return u"SimHei";
  if (isKO()) return u"GulimChe";
  return u"Courier New";
}

const std::string& localeName() noexcept { return locale(); }

void setLocaleNameForTesting(std::string name) { locale() = std::move(name); }

}  // namespace sgutils::PlatformInfo
