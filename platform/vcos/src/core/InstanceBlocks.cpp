// Data blocks by index (vcos/InstanceBlocks.h).
#include "vcos/InstanceBlocks.h"

#include "vcos/COSClass.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/ObjectOps.h"

namespace vcos {

int blockSlotOf(const COSClass* cls, COSID classId) noexcept {
  if (!cls) return -1;
  const std::uint32_t* slot = cls->tables().blockSlot.find(classId);
  return slot ? static_cast<int>(*slot) : -1;
}

void* instanceDataAt(const COSInterface* object, int slot) noexcept {
  void** blocks = internal::ObjectOps::blocks(const_cast<COSInterface*>(object));
  return blocks ? blocks[slot] : nullptr;
}

}  // namespace vcos
