// The index of one class's data block in the instances of the few classes
// met last, so that a block wanted on every new object (or at every step of
// a walk up the tree) is looked up by class id once per class rather than
// once per object. Interpreter thread only, like the other kept answers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSInterface.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/PropertyRouteEpoch.h"

namespace sgutils {

template <std::size_t N = 4>
class KeptBlockSlots {
 public:
  // The index of the block of `classId` in the instances of `cls` (-1:
  // none). An answer is kept while the property route epoch stays (a class
  // that goes moves it, so a class made later at the same address is asked
  // again), and only once the class's block table is complete.
  int slotOf(const COSClass* cls, COSID classId) noexcept {
    const std::uint64_t epoch = vcos::propertyRouteEpoch();
    for (const Entry& e : entries_)
      if (e.cls == cls && e.epoch == epoch) return e.slot;
    const int slot = vcos::blockSlotOf(cls, classId);
    // A finished table holds the class's own block.
    if (cls && vcos::blockSlotOf(cls, cls->getID()) >= 0) {
      entries_[next_] = {cls, epoch, slot};
      next_ = (next_ + 1) % N;
    }
    return slot;
  }

  // The block of `classId` in `object`, or null (also for a destroyed object).
  void* blockOf(const COSInterface* object, COSID classId) noexcept {
    const int slot = slotOf(object->getClass(), classId);
    return slot < 0 ? nullptr : vcos::instanceDataAt(object, slot);
  }

 private:
  struct Entry {
    const COSClass* cls = nullptr;
    std::uint64_t epoch = 0;
    int slot = -1;
  };
  Entry entries_[N];
  std::size_t next_ = 0;
};

}  // namespace sgutils
