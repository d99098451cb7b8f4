// Whether the system owns a property's value (auto) or a user has set it
// (manual). One byte: 0 auto, 1 manual.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class AutoManual : unsigned char { Auto = 0, Manual = 1 };

template <>
struct EnumerationTraits<AutoManual> {
  static constexpr const char* names[] = {"auto", "manual"};
  static constexpr EnumerationDescription description{"AutoManual", names, 2};
};

}  // namespace graphics::datatype
