// Whether an object shows in its parent's list of children: always (on),
// only while a callback runs (callback), or never (off).
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class HandleVisibility : unsigned char { On = 0, Callback = 1, Off = 2 };

template <>
struct EnumerationTraits<HandleVisibility> {
  static constexpr const char* names[] = {"on", "callback", "off"};
  static constexpr EnumerationDescription description{"HandleVisibility", names, 3};
};

}  // namespace graphics::datatype
