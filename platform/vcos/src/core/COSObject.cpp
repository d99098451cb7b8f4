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
}  // namespace

COSObject* COSObject::make(std::size_t blockRoom) {
  assert(blockRoom % 16 == 0 && blockRoom <= kMaxBlockRoom);
  void* slot = slotPool(ownBytes() + blockRoom).allocate();
  return ::new (slot) COSObject();
}

void COSObject::operator delete(COSObject* p, std::destroying_delete_t) noexcept {
  SlotPool& pool = SlotPool::ownerOf(p, kSlabBytes);
  p->~COSObject();
  pool.release(p);
}

// The slot's end, from the size of the pool it came from.
std::byte* COSObject::blockRoomEnd() noexcept {
  return reinterpret_cast<std::byte*>(this) + SlotPool::ownerOf(this, kSlabBytes).slotSize();
}

SlotPool& COSObject::slotPool(std::size_t bytes) {
  // One pool per slot size, made on first use. Never destroyed: objects may
  // outlive static teardown.
  constexpr std::size_t kSizes = (ownBytes() + kMaxBlockRoom) / 16 + 1;
  static auto* pools = new std::array<SlotPool*, kSizes>{};
  assert(bytes % 16 == 0 && bytes / 16 < kSizes);
  SlotPool*& pool = (*pools)[bytes / 16];
  if (!pool) pool = new SlotPool(bytes, 16, kSlabBytes);
  return *pool;
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
