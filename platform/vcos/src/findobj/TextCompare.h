// Not installed; internal to the findobj of class "handle".
//
// Text tests of findobj: what counts as text, and comparison without regard
// to case. Folding covers ASCII and the Latin-1 letters, which is what
// property values and enumerations spell; other characters compare exactly.
#pragma once

#include <string>
#include <string_view>

#include "vx/vxTypes.h"

namespace vcos::search {

// A char row (or 0-by-0 char) or a scalar string.
bool isText(const vxArray* a);

inline char16_t foldChar(char16_t c) noexcept {
  if (c >= u'A' && c <= u'Z') return char16_t(c + 32);
  if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return char16_t(c + 32);
  return c;
}

inline std::u16string foldCase(std::u16string s) {
  for (char16_t& c : s) c = foldChar(c);
  return s;
}

// Compares text with already folded text, folding on the fly.
inline bool equalsFolded(std::u16string_view text, std::u16string_view folded) noexcept {
  if (text.size() != folded.size()) return false;
  for (size_t i = 0; i < text.size(); ++i)
    if (foldChar(text[i]) != folded[i]) return false;
  return true;
}

// The characters of a text array without a copy: a char row's elements.
// Empty for a string scalar, whose text needs a copy (see textOf).
std::u16string_view charsOf(const vxArray* a);
std::u16string textOf(const vxArray* a);

}  // namespace vcos::search
