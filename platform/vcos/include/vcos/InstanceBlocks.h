// The data blocks of an instance by their index in its class's block table,
// for a caller that keeps the index per class: the index of a class's block
// is fixed once the class is built, so a look-up by class id (a probe of the
// class's table, COSInterface::getInstanceData) need be made once per class.
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInternedBase.h"

class COSClass;
class COSInterface;

namespace vcos {

// The index of the data block of `classId` in the instances of `cls`, or -1
// when they carry none (also for a null class).
VCOS_API int blockSlotOf(const COSClass* cls, COSID classId) noexcept;

// The block at `slot` (from blockSlotOf for the object's class, not -1), or
// null for an object without blocks.
VCOS_API void* instanceDataAt(const COSInterface* object, int slot) noexcept;

// Whether the blocks of `object` lie at the offsets its class's layout gives
// them, so that it keeps no block pointers of its own.
VCOS_API bool hasFixedBlocks(const COSInterface* object) noexcept;

}  // namespace vcos
