// Slabs of fixed-size slots; see SlotPool.h.
#include "vcos/src/core/SlotPool.h"

#include <algorithm>
#include <cassert>
#include <new>
#include <utility>

namespace vcos::internal {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kOwnBlocks = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kOwnBlocks = true;
#else
constexpr bool kOwnBlocks = false;
#endif
#else
constexpr bool kOwnBlocks = false;
#endif

}  // namespace

SlotPool::SlotPool(std::size_t slotSize, std::size_t alignment) noexcept {
  assert(alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__ && "slabs have the default alignment");
  alignment = std::max(alignment, alignof(FreeSlot));
  slotSize_ = (std::max(slotSize, sizeof(FreeSlot)) + alignment - 1) / alignment * alignment;
}

void* SlotPool::allocate() {
  if constexpr (kOwnBlocks) return ::operator new(slotSize_);
  if (free_) return std::exchange(free_, free_->next);
  if (bump_ == end_) {
    if (slabs_.size() == slabs_.capacity()) slabs_.reserve(2 * slabs_.size() + 16);  // first: no leak if it throws
    bump_ = static_cast<std::byte*>(::operator new(kSlabBytes));
    end_ = bump_ + kSlabBytes / slotSize_ * slotSize_;
    slabs_.push_back(bump_);
  }
  return std::exchange(bump_, bump_ + slotSize_);
}

void SlotPool::release(void* slot) noexcept {
  if constexpr (kOwnBlocks) return ::operator delete(slot);
  free_ = new (slot) FreeSlot{free_};
}

}  // namespace vcos::internal
