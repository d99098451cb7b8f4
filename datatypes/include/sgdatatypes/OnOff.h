// A switch that reads "on" or "off". Users also give true, false, 1 and 0.
// As a class-object value it is a bool held in the word itself.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "sgdatatypes/Enumeration.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

enum class on_off : unsigned char { Off = 0, On = 1 };

template <>
struct EnumerationTraits<on_off> {
  static constexpr const char* names[] = {"off", "on"};
  static constexpr EnumerationDescription description{"on_off", names, 2};
};

// Raises "VANTEL:datatypes:InvalidOnOff".
SGDATATYPES_API on_off onOffFromArray(const vxArray* value);

inline constexpr bool isOn(on_off v) noexcept { return v == on_off::On; }
inline constexpr on_off toOnOff(bool b) noexcept { return b ? on_off::On : on_off::Off; }

}  // namespace graphics::datatype
