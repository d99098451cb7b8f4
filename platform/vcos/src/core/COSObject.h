// Not installed; internal to the class-object system.
//
// An instance of a class. After the instance, in the same slot, comes the
// room for its blocks that its class's layout asks for (vcos/BlockArena.h):
// the instance and its blocks are one allocation. Where every block of an
// instance lies at the place its class's layout gives it, the instance keeps
// no block pointers: a block is found at a fixed offset from the instance
// (ClassTables::blockOffsets). The last strong reference of a live instance
// deletes it. Slots come from slot pools (one per slot size), so objects
// made in a row are neighbours in memory.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>

#include "vcos/COSInterface.h"
#include "vcos/SlotPool.h"

namespace vcos::internal {

class COSObject final : public COSInterface {
 public:
  // The largest room for blocks that an instance's slot holds; a class whose
  // blocks need more has them made apart.
  static constexpr std::size_t kMaxBlockRoom = 2048;

  // A new instance with `blockRoom` bytes (a multiple of 16, at most
  // kMaxBlockRoom) for its blocks after it.
  static COSObject* make(std::size_t blockRoom);
  // Frees the whole slot, room included.
  static void operator delete(COSObject* p, std::destroying_delete_t) noexcept;

  // The room for blocks after the instance: [begin, end).
  std::byte* blockRoomBegin() noexcept { return reinterpret_cast<std::byte*>(this) + ownBytes(); }
  std::byte* blockRoomEnd() noexcept;
  // The instance's own part of its slot; the room for blocks follows.
  static constexpr std::size_t ownBytes() noexcept { return (sizeof(COSObject) + 15) / 16 * 16; }
  static std::size_t live() noexcept;

 private:
  COSObject() noexcept;
  ~COSObject() override;
  void lastStrongReferenceReleased() override;
  // The pool of slots of `bytes` (a multiple of 16).
  static SlotPool& slotPool(std::size_t bytes);
  static constexpr std::size_t kSlabBytes = SlotPool::kDefaultSlabBytes;
};

}  // namespace vcos::internal
