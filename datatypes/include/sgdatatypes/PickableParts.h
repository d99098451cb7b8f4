// Which parts of an object can take a pointer click: the visible ones, all of
// them whether visible or not, or none.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class PickableParts : unsigned char { Visible = 0, All = 1, None = 2 };

template <>
struct EnumerationTraits<PickableParts> {
  static constexpr const char* names[] = {"visible", "all", "none"};
  static constexpr EnumerationDescription description{"PickableParts", names, 3};
};

}  // namespace graphics::datatype
