// The way an object was once erased from the screen; kept for old code only.
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class EraseMode : unsigned char { Normal = 0, None = 1, Xor = 2, Background = 3 };

template <>
struct EnumerationTraits<EraseMode> {
  static constexpr const char* names[] = {"normal", "none", "xor", "background"};
  static constexpr EnumerationDescription description{"EraseMode", names, 4};
};

}  // namespace graphics::datatype
