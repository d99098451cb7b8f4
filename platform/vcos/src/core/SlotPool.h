// Not installed; internal to the class-object system.
//
// Fixed-size slots carved from large slabs. Objects made one after another
// lie side by side, so a walk over a tree (siblings are mostly made in a
// row) reads memory in order, which the processor fetches ahead, instead of
// one scattered line per object. A freed slot is reused first; slabs are
// kept until the pool goes (the pools of poolOf never go).
//
// Not thread-safe: like the reference counts, it serves the interpreter
// thread. Under AddressSanitizer each slot is a heap block of its own, so
// the sanitizer still sees every use after free.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace vcos::internal {

class SlotPool {
 public:
  // Slots of `slotSize` bytes, each aligned to `alignment` (a power of two).
  SlotPool(std::size_t slotSize, std::size_t alignment) noexcept {
    assert(alignment <= __STDCPP_DEFAULT_NEW_ALIGNMENT__ && "slabs have the default alignment");
    alignment = std::max(alignment, alignof(FreeSlot));
    slotSize_ = (std::max(slotSize, sizeof(FreeSlot)) + alignment - 1) / alignment * alignment;
  }
  ~SlotPool() {
    for (std::byte* slab : slabs_) ::operator delete(slab);
  }
  SlotPool(const SlotPool&) = delete;
  SlotPool& operator=(const SlotPool&) = delete;

  void* allocate() {
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

  void release(void* slot) noexcept {
    if constexpr (kOwnBlocks) return ::operator delete(slot);
    free_ = ::new (slot) FreeSlot{free_};
  }

 private:
#if defined(__SANITIZE_ADDRESS__)
  static constexpr bool kOwnBlocks = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
  static constexpr bool kOwnBlocks = true;
#else
  static constexpr bool kOwnBlocks = false;
#endif
#else
  static constexpr bool kOwnBlocks = false;
#endif
  static constexpr std::size_t kSlabBytes = std::size_t(1) << 20;

  struct FreeSlot {
    FreeSlot* next;
  };

  std::size_t slotSize_ = 0;
  FreeSlot* free_ = nullptr;
  std::byte* bump_ = nullptr;  // the rest of the newest slab
  std::byte* end_ = nullptr;
  std::vector<std::byte*> slabs_;
};

// The pool of the objects of type T. Never destroyed: objects may outlive
// static teardown.
template <class T>
SlotPool& poolOf() {
  static SlotPool* pool = new SlotPool(sizeof(T), alignof(T));
  return *pool;
}

}  // namespace vcos::internal
