// Not installed; internal to the class-object system (the library's block
// pools use it too).
//
// Fixed-size slots carved from slabs. Objects made one after another lie
// side by side, so a walk over a tree (siblings are mostly made in a row)
// reads memory in order, which the processor fetches ahead, instead of one
// scattered line per object.
//
// Each slab is aligned to its size and starts with a header: the slab of a
// slot is its address rounded down, so a slot given back joins its own
// slab's free list and the slab counts the slots in use. A slab whose last
// slot comes back is kept for the next slots while the empty slabs kept by
// all pools of the process stay within kKeptBytes, and goes back to the
// system past that: a tree deleted and made again reuses pages that are
// there already instead of faulting in fresh ones, and a mass deletion
// still gives back all but kKeptBytes. vcos::releaseKeptSlabs gives the
// kept ones back too. Slabs with free slots are
// on a list; new slots come from the slab at its head, freed slots first,
// then the slab's untouched rest.
//
// Not thread-safe: like the reference counts, it serves the interpreter
// thread. Under AddressSanitizer each slot is a heap block of its own, so
// the sanitizer still sees every use after free.
#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "foundation/PlatformExport.h"

namespace vcos::internal {

class SlotPool;
// The bytes of the empty slabs that all pools of the process keep, and the
// list of pools (for vcos::releaseKeptSlabs); in the platform library, so
// that the library's pools and the platform's share them.
VCOS_API std::size_t& keptSlabBytes() noexcept;
VCOS_API void registerSlotPool(SlotPool* pool) noexcept;
VCOS_API void unregisterSlotPool(SlotPool* pool) noexcept;

class SlotPool {
 public:
  static constexpr std::size_t kDefaultSlabBytes = std::size_t(1) << 20;
  // The most that the empty slabs kept by all pools may take together:
  // enough for a tree of some 100,000 objects deleted and made (or copied)
  // again to find its pages there.
  static constexpr std::size_t kKeptBytes = std::size_t(256) << 20;

  // Slots of `slotSize` bytes, each aligned to `alignment` (a power of two,
  // at most 64), in slabs of `slabBytes` (a power of two, a multiple of the
  // page size).
  SlotPool(std::size_t slotSize, std::size_t alignment, std::size_t slabBytes = kDefaultSlabBytes) noexcept
      : slabBytes_(slabBytes) {
    registerSlotPool(this);
    assert(alignment <= 64 && (slabBytes & (slabBytes - 1)) == 0);
    alignment = std::max(alignment, alignof(FreeSlot));
    slotSize_ = (std::max(slotSize, sizeof(FreeSlot)) + alignment - 1) / alignment * alignment;
    firstSlot_ = (sizeof(Slab) + alignment - 1) / alignment * alignment;
    assert(firstSlot_ + slotSize_ <= slabBytes_ && "a slot must fit in a slab");
  }
  // Slabs still in use stay mapped: their slots may be reached after the
  // pool goes (the pools of poolOf never go).
  ~SlotPool() {
    releaseKept();
    unregisterSlotPool(this);
  }
  SlotPool(const SlotPool&) = delete;
  SlotPool& operator=(const SlotPool&) = delete;

  void* allocate() {
    if constexpr (kOwnBlocks) {
      // Behind a header that names the pool, for ownerOf.
      auto* block = static_cast<std::byte*>(::operator new(kOwnHeader + slotSize_));
      *reinterpret_cast<SlotPool**>(block) = this;
      return block + kOwnHeader;
    }
    Slab* s = open_;
    if (!s) s = openSlab();
    void* slot;
    if (s->free)
      slot = std::exchange(s->free, s->free->next);
    else
      slot = std::exchange(s->bump, s->bump + slotSize_);
    ++s->used;
    if (!s->free && s->bump == s->end) unlinkOpen(s);  // full
    return slot;
  }

  void release(void* slot) noexcept {
    if constexpr (kOwnBlocks) return ::operator delete(static_cast<std::byte*>(slot) - kOwnHeader);
    Slab* s = slabOf(slot);
    assert(s->pool == this && "a slot given back to another pool");
    const bool wasFull = !s->free && s->bump == s->end;
    s->free = ::new (slot) FreeSlot{s->free};
    if (--s->used == 0) {
      if (!wasFull) unlinkOpen(s);
      retire(s);
    } else if (wasFull) {
      linkOpen(s);
    }
  }

  // The pool that `slot` came from, given the size of that pool's slabs.
  static SlotPool& ownerOf(void* slot, std::size_t slabBytes) noexcept {
    if constexpr (kOwnBlocks) return **reinterpret_cast<SlotPool**>(static_cast<std::byte*>(slot) - kOwnHeader);
    return *reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(slot) & ~(slabBytes - 1))->pool;
  }
  std::size_t slotSize() const noexcept { return slotSize_; }

  // Gives the kept empty slabs back to the system.
  void releaseKept() noexcept {
    while (Slab* s = kept_) {
      kept_ = s->next;
      keptSlabBytes() -= slabBytes_;
      unmap(s);
    }
  }

  // Slabs mapped now: those in use, and the kept empty ones.
  std::size_t slabCount() const noexcept { return slabs_; }

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

  static constexpr std::size_t kOwnHeader = 16;  // keeps the slot 16-aligned

  struct FreeSlot {
    FreeSlot* next;
  };
  struct Slab {
    SlotPool* pool;
    FreeSlot* free = nullptr;  // slots given back
    std::byte* bump;           // the untouched rest
    std::byte* end;
    std::size_t used = 0;
    Slab* prev = nullptr;  // on the list of slabs with free slots
    Slab* next = nullptr;
  };

  Slab* slabOf(void* slot) const noexcept {
    return reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(slot) & ~(slabBytes_ - 1));
  }

  Slab* openSlab() {
    Slab* s = kept_;
    if (s) {
      kept_ = s->next;
      keptSlabBytes() -= slabBytes_;
    } else {
      s = map();
    }
    linkOpen(s);
    return s;
  }

  // A fresh slab, aligned to its size: twice the size mapped, the rest
  // around the aligned part unmapped again.
  Slab* map() {
    void* p = ::mmap(nullptr, 2 * slabBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) throw std::bad_alloc();
    auto start = reinterpret_cast<std::uintptr_t>(p);
    auto aligned = (start + slabBytes_ - 1) & ~(slabBytes_ - 1);
    if (aligned > start) ::munmap(p, aligned - start);
    if (std::uintptr_t tail = start + 2 * slabBytes_ - (aligned + slabBytes_))
      ::munmap(reinterpret_cast<void*>(aligned + slabBytes_), tail);
    auto* base = reinterpret_cast<std::byte*>(aligned);
    ++slabs_;
    return ::new (base) Slab{this, nullptr, base + firstSlot_,
                             base + firstSlot_ + (slabBytes_ - firstSlot_) / slotSize_ * slotSize_};
  }

  void unmap(Slab* s) noexcept {
    --slabs_;
    ::munmap(s, slabBytes_);
  }

  // An empty slab: kept (reset, so its pages are written again
  // in order), or given back.
  void retire(Slab* s) noexcept {
    if (keptSlabBytes() + slabBytes_ > kKeptBytes) return unmap(s);
    auto* base = reinterpret_cast<std::byte*>(s);
    s->free = nullptr;
    s->bump = base + firstSlot_;
    s->prev = nullptr;
    s->next = kept_;
    kept_ = s;
    keptSlabBytes() += slabBytes_;
  }

  void linkOpen(Slab* s) noexcept {
    s->prev = nullptr;
    s->next = open_;
    if (open_) open_->prev = s;
    open_ = s;
  }
  void unlinkOpen(Slab* s) noexcept {
    if (s->prev)
      s->prev->next = s->next;
    else
      open_ = s->next;
    if (s->next) s->next->prev = s->prev;
    s->prev = s->next = nullptr;
  }

  std::size_t slabBytes_;
  std::size_t slotSize_ = 0;
  std::size_t firstSlot_ = 0;
  Slab* open_ = nullptr;   // slabs with free slots, the one to use first at the head
  Slab* kept_ = nullptr;  // empty slabs kept, linked through next
  std::size_t slabs_ = 0;
};

// The pool of the objects of type T. Never destroyed: objects may outlive
// static teardown.
template <class T>
SlotPool& poolOf() {
  static SlotPool* pool = new SlotPool(sizeof(T), alignof(T));
  return *pool;
}

}  // namespace vcos::internal
