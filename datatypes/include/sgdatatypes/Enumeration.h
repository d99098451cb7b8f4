// The one-byte enumerations of the graphics properties (AutoManual,
// HandleVisibility, PickableParts, ...). Each enumeration names its texts in
// order in an EnumerationTraits specialisation; a value is the index of its
// text. Users give the text in any case and read it back in lower case.
#pragma once

#include <cstddef>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

struct EnumerationDescription {
  const char* typeName;      // the short type name, "AutoManual"
  const char* const* names;  // the texts, index = value
  unsigned char count;
  // Values from `listed` on are valid but hidden from the list of possible
  // values (a value kept for old code or for tests).
  unsigned char listed = 255;
};

// Specialised by every enumeration with `static constexpr EnumerationDescription description`.
template <class E>
struct EnumerationTraits;

// The value of a text; raises "VANTEL:datatypes:InvalidEnumerationValue" for
// anything but one of the enumeration's texts.
SGDATATYPES_API unsigned char parseEnumeration(const vxArray* value, const EnumerationDescription& description);
// The value's text as a char row, owned by the caller.
SGDATATYPES_API vxArray* enumerationToArray(unsigned char value, const EnumerationDescription& description);
// A byte that holds `value` and lives for the life of the process: the word
// of an enumeration value points at one of these, so values are passed
// without allocating.
SGDATATYPES_API const unsigned char* canonicalEnumerationByte(unsigned char value) noexcept;

template <class E>
E enumerationFromArray(const vxArray* value) {
  return static_cast<E>(parseEnumeration(value, EnumerationTraits<E>::description));
}

template <class E>
vxArray* enumerationToArray(E value) {
  return enumerationToArray(static_cast<unsigned char>(value), EnumerationTraits<E>::description);
}

template <class E>
const char* enumerationName(E value) noexcept {
  const EnumerationDescription& d = EnumerationTraits<E>::description;
  const auto i = static_cast<unsigned char>(value);
  return i < d.count ? d.names[i] : "";
}

}  // namespace graphics::datatype
