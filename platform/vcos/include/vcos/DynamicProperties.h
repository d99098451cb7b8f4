// A cheap test of whether an object has properties added to it at run time,
// so that a check made per object (a walk over many children) can skip the
// look-up by name that findDynamicProperty makes.
#pragma once

#include "foundation/PlatformExport.h"

class COSInterface;

namespace vcos {

// False for null; the object need not be live.
VCOS_API bool hasDynamicProperties(const COSInterface* object) noexcept;

}  // namespace vcos
