// Events that every object sends without its class declaring them.
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInternedBase.h"
#include "vcos/MemberAccess.h"

namespace vcos {

// Whether `eventId` names such an event for objects of this connectivity:
// "ObjectBeingDestroyed", for every connectivity.
VCOS_API bool isValidObjectEvent(COSID eventId, COSConnectivity connectivity) noexcept;

}  // namespace vcos
