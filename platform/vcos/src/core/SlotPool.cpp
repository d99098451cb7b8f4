// The process-wide parts of the slot pools: the bytes of the empty slabs
// they keep, and the list of pools that releaseKeptSlabs walks.
#include "vcos/SlotPool.h"

#include <array>

#include "vcos/MemoryPools.h"

namespace vcos::internal {
namespace {
// Pools are few (one per slot size) and mostly never go; one that does not
// fit here keeps its empty slabs until it goes.
std::array<SlotPool*, 1024> pools{};
std::size_t poolCount = 0;
}  // namespace

std::size_t& keptSlabBytes() noexcept {
  static std::size_t bytes = 0;
  return bytes;
}

void registerSlotPool(SlotPool* pool) noexcept {
  if (poolCount < pools.size()) pools[poolCount++] = pool;
}

void unregisterSlotPool(SlotPool* pool) noexcept {
  for (std::size_t i = 0; i < poolCount; ++i)
    if (pools[i] == pool) {
      pools[i] = pools[--poolCount];
      return;
    }
}

}  // namespace vcos::internal

void vcos::releaseKeptSlabs() noexcept {
  for (std::size_t i = 0; i < vcos::internal::poolCount; ++i) vcos::internal::pools[i]->releaseKept();
}
