// Text parsing and the canonical bytes of the one-byte enumerations.
#include "sgdatatypes/Enumeration.h"

#include <array>
#include <string>

#include "ArrayValues.h"
#include "foundation/core/except/Error.h"
#include "sgdatatypes/OnOff.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace {

// The listed texts, for the error message; hidden values are not offered.
std::string listOf(const EnumerationDescription& d) {
  const unsigned char n = d.listed < d.count ? d.listed : d.count;
  std::string out;
  for (unsigned char i = 0; i < n; ++i) {
    if (i) out += i + 1 == n ? "' or '" : "', '";
    out += d.names[i];
  }
  return "'" + out + "'";
}

constexpr std::array<unsigned char, 256> makeBytes() {
  std::array<unsigned char, 256> b{};
  for (int i = 0; i < 256; ++i) b[i] = static_cast<unsigned char>(i);
  return b;
}
constexpr std::array<unsigned char, 256> kBytes = makeBytes();

char asciiLower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Whether the UTF-16 text is the (ASCII) name, ignoring case: a code unit
// outside ASCII matches no name, as its UTF-8 bytes would not.
bool charsEqualIgnoringCase(const vxChar* chars, std::size_t n, const char* name) noexcept {
  for (std::size_t k = 0; k < n; ++k) {
    if (name[k] == '\0' || chars[k] >= 0x80) return false;
    if (asciiLower(static_cast<char>(chars[k])) != asciiLower(name[k])) return false;
  }
  return name[n] == '\0';
}

}  // namespace

unsigned char parseEnumeration(const vxArray* value, const EnumerationDescription& d) {
  // A char row, the usual form, is compared where it lies.
  if (value && vxIsChar(value) && detail::isText(value)) {
    const std::size_t n = vxIsEmpty(value) ? 0 : vxGetNumberOfElements(value);
    const vxChar* chars = n ? vxGetChars(value) : nullptr;
    for (unsigned char i = 0; i < d.count; ++i)
      if (charsEqualIgnoringCase(chars, n, d.names[i])) return i;
  } else if (detail::isText(value)) {
    const std::string text = detail::textOf(value);
    for (unsigned char i = 0; i < d.count; ++i)
      if (detail::equalsIgnoringCase(text, d.names[i])) return i;
  }
  throw Error("VANTEL:datatypes:InvalidEnumerationValue", d.typeName, listOf(d));
}

vxArray* enumerationToArray(unsigned char value, const EnumerationDescription& d) {
  return detail::charRow(value < d.count ? d.names[value] : "");
}

const unsigned char* canonicalEnumerationByte(unsigned char value) noexcept { return &kBytes[value]; }

on_off onOffFromArray(const vxArray* value) {
  // The common case first, with the fewest questions: a logical scalar.
  if (value && vxIsLogicalScalar(value))
    return *static_cast<const bool*>(vxGetData(value)) ? on_off::On : on_off::Off;
  if (detail::isText(value)) {
    const std::string text = detail::textOf(value);
    if (detail::equalsIgnoringCase(text, "on")) return on_off::On;
    if (detail::equalsIgnoringCase(text, "off")) return on_off::Off;
  } else if (value && vxIsScalar(value) && (vxIsLogical(value) || detail::isRealNumeric(value))) {
    const double x = vxIsLogical(value) ? (*static_cast<const bool*>(vxGetData(value)) ? 1.0 : 0.0)
                                        : detail::numberAt(value, 0);
    if (x == 1.0) return on_off::On;
    if (x == 0.0) return on_off::Off;
  }
  throw Error("VANTEL:datatypes:InvalidOnOff", detail::describe(value));
}

}  // namespace graphics::datatype
