// A cheap test of whether an object has properties added to it at run time,
// so that a check made per object (a walk over many children) can skip the
// look-up by name that findDynamicProperty makes; and the list of them, for
// a caller that walks them all (a writer saving those marked to be stored).
#pragma once

#include <span>

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"

class COSInterface;

namespace vcos {

// False for null; the object need not be live.
VCOS_API bool hasDynamicProperties(const COSInterface* object) noexcept;

// The object's run-time properties (each a COSPropInfo), in the order they
// were added; empty for null. The span lasts until a property is added to or
// removed from the object.
VCOS_API std::span<const COSInterfacePtr> dynamicProperties(const COSInterface* object) noexcept;

}  // namespace vcos
