// A counter of changes to the defaults stored on objects: it moves whenever
// a store is made, replaced, edited or dropped, or an object is marked as
// carrying a saved store still to move in. An answer worked out from the
// stores is current while the counter reads what it read then.
#pragma once

#include <cstdint>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

SGUTILS_API std::uint64_t storedDefaultsEpoch() noexcept;
SGUTILS_API void noteStoredDefaultsChanged() noexcept;

}  // namespace sgutils
