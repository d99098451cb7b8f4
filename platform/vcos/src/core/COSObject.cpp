// Instances: their slots, the live count for leak tests, and deletion when
// the last strong reference of a live instance goes.
#include "vcos/src/core/COSObject.h"

#include <array>
#include <cassert>

#include "vcos/src/core/ObjectOps.h"
#include "vcos/SlotPool.h"
#include "vcos/COSObjectOperations.h"

namespace vcos::internal {
namespace {
std::atomic<std::size_t> liveObjects{0};

template <std::size_t N>
COSObject* makeWith(std::size_t blockRoom) {
  return COSObjectWith<N>::make(blockRoom);
}
}  // namespace

COSObject* COSObject::make(std::size_t blocks, std::size_t blockRoom) {
  assert(blockRoom % 16 == 0 && blockRoom <= kMaxBlockRoom);
  // Plain instances (built-in classes, meta objects) have short ancestries;
  // graphics objects have ten to fourteen, each size its own (a pointer
  // unused is 8 bytes per object).
  if (blocks <= 6) return makeWith<6>(blockRoom);
  if (blocks <= 9) return makeWith<9>(blockRoom);
  switch (blocks) {
    case 10: return makeWith<10>(blockRoom);
    case 11: return makeWith<11>(blockRoom);
    case 12: return makeWith<12>(blockRoom);
    case 13: return makeWith<13>(blockRoom);
    default: return makeWith<14>(blockRoom);
  }
}

// The slot's end, from the size of the pool it came from.
std::byte* COSObject::blockRoomEnd() noexcept {
  return reinterpret_cast<std::byte*>(this) + SlotPool::ownerOf(this, kSlabBytes).slotSize();
}

SlotPool& COSObject::slotPool(std::size_t bytes) {
  // One pool per slot size, made on first use. Never destroyed: objects may
  // outlive static teardown.
  constexpr std::size_t kSizes = (COSObjectWith<14>::ownBytes() + kMaxBlockRoom) / 16 + 1;
  static auto* pools = new std::array<SlotPool*, kSizes>{};
  assert(bytes % 16 == 0 && bytes / 16 < kSizes);
  SlotPool*& pool = (*pools)[bytes / 16];
  if (!pool) pool = new SlotPool(bytes, 16, kSlabBytes);
  return *pool;
}

void COSObject::destroyAndFree(COSObject* p) noexcept {
  SlotPool& pool = SlotPool::ownerOf(p, kSlabBytes);
  p->~COSObject();
  pool.release(p);
}

COSObject::COSObject() noexcept : COSInterface(COSKind::Instance) { liveObjects.fetch_add(1, std::memory_order_relaxed); }

COSObject::~COSObject() { liveObjects.fetch_sub(1, std::memory_order_relaxed); }

std::size_t COSObject::live() noexcept { return liveObjects.load(std::memory_order_relaxed); }

void COSObject::lastStrongReferenceReleased() {
  if (isDestroyed() || isBeingDestroyed()) return;
  try {
    ObjectOps::destroy(this, nullptr);
  } catch (...) {
    // A failing listener or class hook must not escape a reference release;
    // destroy() has marked the object destroyed whatever happened.
  }
}

std::size_t liveInstanceCount() noexcept { return COSObject::live(); }

}  // namespace vcos::internal
