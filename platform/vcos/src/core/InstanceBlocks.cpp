// Data blocks by index (vcos/InstanceBlocks.h).
#include "vcos/InstanceBlocks.h"

#include "vcos/COSClass.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/ObjectOps.h"

namespace vcos {

int blockSlotOf(const COSClass* cls, COSID classId) noexcept {
  if (!cls) return -1;
  const internal::BlockSlot* slot = cls->tables().blockSlot.find(classId);
  return slot ? static_cast<int>(slot->index) : -1;
}

void* instanceDataAt(const COSInterface* object, int slot) noexcept {
  return internal::ObjectOps::blockAt(object, static_cast<std::size_t>(slot));
}

bool hasFixedBlocks(const COSInterface* object) noexcept { return internal::ObjectOps::hasFixedBlocks(object); }

}  // namespace vcos
