// The units of a position or size.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class Units : unsigned char { Pixels = 0, Normalized = 1, Inches = 2, Centimeters = 3, Points = 4, Characters = 5 };

template <>
struct EnumerationTraits<Units> {
  static constexpr const char* names[] = {"pixels", "normalized", "inches", "centimeters", "points", "characters"};
  static constexpr EnumerationDescription description{"Units", names, 6};
};

}  // namespace graphics::datatype
