// UTF-8 and UTF-16 conversions.
#include "foundation/text/Utf.h"

namespace foundation::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf16(std::u16string& out, char32_t c) {
  if (c < 0x10000) {
    out.push_back(static_cast<char16_t>(c));
  } else {
    c -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
  }
}

void appendUtf8(std::string& out, char32_t c) {
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

bool isSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

}  // namespace

std::u16string utf8ToUtf16(std::string_view in) {
  std::u16string out;
  out.reserve(in.size());
  std::size_t i = 0;
  while (i < in.size()) {
    const auto b = static_cast<unsigned char>(in[i]);
    if (b < 0x80) {
      out.push_back(b);
      ++i;
      continue;
    }
    // Lead byte: length of the sequence and the bits it carries.
    std::size_t len;
    char32_t c;
    char32_t min;
    if ((b & 0xE0) == 0xC0) {
      len = 2, c = b & 0x1F, min = 0x80;
    } else if ((b & 0xF0) == 0xE0) {
      len = 3, c = b & 0x0F, min = 0x800;
    } else if ((b & 0xF8) == 0xF0) {
      len = 4, c = b & 0x07, min = 0x10000;
    } else {
      out.push_back(kReplacement);
      ++i;
      continue;
    }
    std::size_t k = 1;
    for (; k < len && i + k < in.size(); ++k) {
      const auto t = static_cast<unsigned char>(in[i + k]);
      if ((t & 0xC0) != 0x80) break;
      c = (c << 6) | (t & 0x3F);
    }
    if (k < len || c < min || c > 0x10FFFF || isSurrogate(c)) {
      // Truncated, overlong or out of range: one replacement for what was read.
      out.push_back(kReplacement);
      i += k;
      continue;
    }
    appendUtf16(out, c);
    i += len;
  }
  return out;
}

std::string utf16ToUtf8(std::u16string_view in) {
  std::string out;
  out.reserve(in.size());
  for (std::size_t i = 0; i < in.size(); ++i) {
    char32_t c = in[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < in.size() && in[i + 1] >= 0xDC00 && in[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (in[i + 1] - 0xDC00);
      ++i;
    } else if (isSurrogate(c)) {
      c = kReplacement;
    }
    appendUtf8(out, c);
  }
  return out;
}

}  // namespace foundation::text
