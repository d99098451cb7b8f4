// Not installed; internal to the class-object system.
//
// An instance of a class. The data-block pointers live in the instance's own
// slot: instances come in a few sizes (COSObjectWith<N>), and an instance is
// made in the smallest that holds its ancestry's blocks, so a graphics
// object's long ancestry needs no array of its own. Only ancestries longer
// than the largest size get a separate array. After the instance, in the
// same slot, comes the room for its blocks that its class's layout asks for
// (vcos/BlockArena.h): the instance and its blocks are one allocation. The
// last strong reference of a live instance deletes it. Slots come from slot
// pools (one per slot size), so objects made in a row are neighbours in
// memory.
#pragma once

#include <atomic>
#include <cstddef>
#include <new>

#include "vcos/COSInterface.h"
#include "vcos/SlotPool.h"

namespace vcos::internal {

class COSObject : public COSInterface {
 public:
  // The largest room for blocks that an instance's slot holds; a class whose
  // blocks need more has them made apart.
  static constexpr std::size_t kMaxBlockRoom = 2048;

  // A new instance with room for `blocks` block pointers where a size fits,
  // and `blockRoom` bytes (a multiple of 16, at most kMaxBlockRoom) for its
  // blocks after it.
  static COSObject* make(std::size_t blocks, std::size_t blockRoom);
  // The block pointers in the instance's slot, and how many there are.
  virtual void** inlineBlocks() noexcept = 0;
  virtual std::size_t inlineCapacity() const noexcept = 0;
  // The room for blocks after the instance: [begin, end).
  virtual std::byte* blockRoomBegin() noexcept = 0;
  std::byte* blockRoomEnd() noexcept;
  static std::size_t live() noexcept;

 protected:
  COSObject() noexcept;
  ~COSObject() override;
  void lastStrongReferenceReleased() override;
  // The pool of slots of `bytes` (a multiple of 16).
  static SlotPool& slotPool(std::size_t bytes);
  // Destroys the instance and gives its slot, room included, back to the
  // pool it came from.
  static void destroyAndFree(COSObject* p) noexcept;
  static constexpr std::size_t kSlabBytes = SlotPool::kDefaultSlabBytes;
};

template <std::size_t N>
class COSObjectWith final : public COSObject {
 public:
  static COSObjectWith* make(std::size_t blockRoom) {
    void* slot = slotPool(ownBytes() + blockRoom).allocate();
    return ::new (slot) COSObjectWith();
  }
  // Frees the whole slot, room included.
  static void operator delete(COSObjectWith* p, std::destroying_delete_t) noexcept { destroyAndFree(p); }

  void** inlineBlocks() noexcept override { return inline_; }
  std::size_t inlineCapacity() const noexcept override { return N; }
  std::byte* blockRoomBegin() noexcept override { return reinterpret_cast<std::byte*>(this) + ownBytes(); }

  // The instance's own part of its slot; the room for blocks follows.
  static constexpr std::size_t ownBytes() noexcept { return (sizeof(COSObjectWith) + 15) / 16 * 16; }

 private:
  COSObjectWith() noexcept = default;
  void* inline_[N] = {};
};

}  // namespace vcos::internal
