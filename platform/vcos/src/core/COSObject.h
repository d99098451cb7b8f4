// Not installed; internal to the class-object system.
//
// An instance of a class. The data-block pointers live in the instance's own
// slot: instances come in a few sizes (COSObjectWith<N>), and an instance is
// made in the smallest that holds its ancestry's blocks, so a graphics
// object's long ancestry needs no array of its own. Only ancestries longer
// than the largest size get a separate array. The last strong reference of a
// live instance deletes it. Instances come from slot pools (one per size), so
// objects made in a row are neighbours in memory.
#pragma once

#include <atomic>
#include <cstddef>

#include "vcos/COSInterface.h"
#include "vcos/src/core/SlotPool.h"

namespace vcos::internal {

class COSObject : public COSInterface {
 public:
  // A new instance with room for `blocks` block pointers where a size fits.
  static COSObject* make(std::size_t blocks);
  // The block pointers in the instance's slot, and how many there are.
  virtual void** inlineBlocks() noexcept = 0;
  virtual std::size_t inlineCapacity() const noexcept = 0;
  static std::size_t live() noexcept;

 protected:
  COSObject() noexcept;
  ~COSObject() override;
  void lastStrongReferenceReleased() override;
};

template <std::size_t N>
class COSObjectWith final : public COSObject {
 public:
  static void* operator new(std::size_t size) {
    (void)size;
    return poolOf<COSObjectWith>().allocate();
  }
  static void operator delete(void* p) noexcept {
    if (p) poolOf<COSObjectWith>().release(p);
  }
  void** inlineBlocks() noexcept override { return inline_; }
  std::size_t inlineCapacity() const noexcept override { return N; }

 private:
  void* inline_[N] = {};
};

}  // namespace vcos::internal
