// What happens to a callback that arrives while another, not interruptible
// one runs: it waits its turn (queue) or is dropped (cancel).
#pragma once

#include "sgdatatypes/Enumeration.h"

namespace graphics::datatype {

enum class BusyAction : unsigned char { Queue = 0, Cancel = 1 };

template <>
struct EnumerationTraits<BusyAction> {
  static constexpr const char* names[] = {"queue", "cancel"};
  static constexpr EnumerationDescription description{"BusyAction", names, 2};
};

}  // namespace graphics::datatype
