// Colour parsing: numeric rows, names, one-letter names, hexadecimal forms.
#include "sgdatatypes/RGBAColor.h"

#include <array>
#include <cctype>
#include <cmath>

#include "ArrayValues.h"
#include "foundation/core/except/Error.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace {

struct NamedColor {
  std::string_view name;
  char letter;
  double r, g, b;
};

constexpr std::array<NamedColor, 8> kNamedColors = {{
    {"red", 'r', 1, 0, 0},
    {"green", 'g', 0, 1, 0},
    {"blue", 'b', 0, 0, 1},
    {"cyan", 'c', 0, 1, 1},
    {"magenta", 'm', 1, 0, 1},
    {"yellow", 'y', 1, 1, 0},
    {"black", 'k', 0, 0, 0},
    {"white", 'w', 1, 1, 1},
}};

bool inUnitRange(double x) noexcept { return x >= 0.0 && x <= 1.0; }  // false for NaN

int hexDigit(char c) noexcept {
  if (c >= '0' && c <= '9') return c - '0';
  c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// "#RRGGBB" or "#RGB" into `out`; false for any other text.
bool parseHex(std::string_view s, double out[3]) noexcept {
  if (s.size() != 7 && s.size() != 4) return false;
  const bool shortForm = s.size() == 4;
  for (int i = 0; i < 3; ++i) {
    int hi, lo;
    if (shortForm) {
      hi = lo = hexDigit(s[1 + i]);
    } else {
      hi = hexDigit(s[1 + 2 * i]);
      lo = hexDigit(s[2 + 2 * i]);
    }
    if (hi < 0 || lo < 0) return false;
    out[i] = (hi * 16 + lo) / 255.0;
  }
  return true;
}

}  // namespace

RGBAColor::RGBAColor(double red, double green, double blue, double alpha) : rgba_{red, green, blue, alpha} {
  for (double c : rgba_)
    if (!inUnitRange(c)) throw Error("VANTEL:datatypes:InvalidColor", "a value outside the range 0 to 1");
}

RGBAColor::RGBAColor(std::string_view text) {
  std::string word = detail::normalizedWord(text);
  if (!word.empty() && word[0] == '#') {
    if (parseHex(word, rgba_)) return;
  } else if (word == "none") {
    none_ = true;
    return;
  } else if (word.size() == 1) {
    for (const NamedColor& c : kNamedColors)
      if (c.letter == word[0]) {
        rgba_[0] = c.r, rgba_[1] = c.g, rgba_[2] = c.b;
        return;
      }
  } else {
    for (const NamedColor& c : kNamedColors)
      if (c.name == word) {
        rgba_[0] = c.r, rgba_[1] = c.g, rgba_[2] = c.b;
        return;
      }
  }
  throw Error("VANTEL:datatypes:InvalidColorText", std::string(text));
}

RGBAColor RGBAColor::none() noexcept {
  RGBAColor c;
  c.none_ = true;
  return c;
}

RGBAColor RGBAColor::fromArray(const vxArray* value) {
  // The common case first: a real double row of three or four values.
  if (value && vxGetClassID(value) == vxDOUBLE_CLASS && !vxIsComplex(value) && vxGetM(value) == 1 &&
      vxGetNumberOfDimensions(value) == 2) {
    const vxSize n = vxGetN(value);
    if (n == 3 || n == 4) {
      const double* p = vxGetPr(value);
      return RGBAColor(p[0], p[1], p[2], n == 4 ? p[3] : 1.0);
    }
  }
  if (detail::isText(value)) return RGBAColor(detail::textOf(value));
  if (!detail::isRealNumeric(value) || !vxIsVector(value))
    throw Error("VANTEL:datatypes:InvalidColor", detail::describe(value));
  const vxSize n = vxGetNumberOfElements(value);
  if (n != 3 && n != 4) throw Error("VANTEL:datatypes:InvalidColor", detail::describe(value));
  double c[4] = {0, 0, 0, 1};
  for (vxSize i = 0; i < n; ++i) c[i] = detail::numberAt(value, i);
  return RGBAColor(c[0], c[1], c[2], c[3]);
}

vxArray* RGBAColor::toArray() const {
  if (none_) return detail::charRow("none");
  return detail::doubleRow(rgba_, rgba_[3] == 1.0 ? 3 : 4);
}

}  // namespace graphics::datatype
