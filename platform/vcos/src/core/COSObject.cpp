// Instances: the live count for leak tests, and deletion when the last
// strong reference of a live instance goes.
#include "vcos/src/core/COSObject.h"

#include <cassert>

#include "vcos/src/core/ObjectOps.h"
#include "vcos/src/core/SlotPool.h"
#include "vcos/COSObjectOperations.h"

namespace vcos::internal {
namespace {
std::atomic<std::size_t> liveObjects{0};
}  // namespace

COSObject* COSObject::make(std::size_t blocks) {
  // Plain instances (built-in classes, meta objects) have short ancestries;
  // graphics objects have about ten classes.
  if (blocks <= 6) return new COSObjectWith<6>();
  if (blocks <= 9) return new COSObjectWith<9>();
  if (blocks <= 10) return new COSObjectWith<10>();
  return new COSObjectWith<14>();
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
