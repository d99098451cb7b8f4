// Casts from the general face to the specific one. Each returns null when the
// object is of another kind (or null).
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInterface.h"

class COSClass;
class COSEventInfo;
class COSMethodInfo;
class COSPropInfo;

VCOS_API COSClass* cosiToClass(COSInterface* object) noexcept;
VCOS_API COSPropInfo* cosiToProp(COSInterface* object) noexcept;
VCOS_API COSMethodInfo* cosiToMethod(COSInterface* object) noexcept;
VCOS_API COSEventInfo* cosiToEvent(COSInterface* object) noexcept;
// The class that defines a property, method or event; null otherwise.
VCOS_API COSClass* cosiClassOfMember(COSInterface* member) noexcept;
