// Wall-clock time stamps of view updates.
#pragma once

#include <cstdint>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

// Milliseconds of the system clock: its count of 100-nanosecond ticks divided
// by 10,000, rounded toward zero.
SGUTILS_API std::int64_t timestamp();

}  // namespace sgutils
