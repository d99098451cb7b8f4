// Not installed; internal to the class-object system.
//
// Fixed-size slots carved from large slabs. Objects made one after another
// lie side by side, so a walk over a tree (siblings are mostly made in a
// row) reads memory in order, which the processor fetches ahead, instead of
// one scattered line per object. A freed slot is reused first; slabs are
// kept for reuse and never handed back.
//
// Not thread-safe: like the reference counts, it serves the interpreter
// thread. Under AddressSanitizer each slot is a heap block of its own, so
// the sanitizer still sees every use after free.
#pragma once

#include <cstddef>
#include <vector>

namespace vcos::internal {

class SlotPool {
 public:
  // Slots of `slotSize` bytes, each aligned to `alignment` (a power of two).
  SlotPool(std::size_t slotSize, std::size_t alignment) noexcept;
  SlotPool(const SlotPool&) = delete;
  SlotPool& operator=(const SlotPool&) = delete;

  void* allocate();
  void release(void* slot) noexcept;

 private:
  struct FreeSlot {
    FreeSlot* next;
  };
  static constexpr std::size_t kSlabBytes = std::size_t(1) << 20;

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
