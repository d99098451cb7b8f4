// The change counter of stored defaults.
#include "sgutils/defaults/StoredDefaultsEpoch.h"

namespace sgutils {

namespace {
// Interpreter thread only, like the stores themselves.
std::uint64_t gEpoch = 1;
}  // namespace

std::uint64_t storedDefaultsEpoch() noexcept { return gEpoch; }
void noteStoredDefaultsChanged() noexcept { ++gEpoch; }

}  // namespace sgutils
