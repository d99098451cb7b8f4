// Property get and set on an element of an object array, by name or by a
// property already found on the element's class, through the ordinary
// public client path (access checks, listeners, set methods). The value is
// converted between the property's type and an array.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

class COSPropInfo;

// A new array owned by the caller.
VCOS_API vxArray* vxGetProperty(const vxArray* array, vxIndex index, const char* propertyName);
// The value is borrowed.
VCOS_API void vxSetProperty(vxArray* array, vxIndex index, const char* propertyName, const vxArray* value);
// Raises what vxSetProperty would raise for a deleted object, an unknown
// property or a value the property's type refuses, without setting
// anything: callers that set several values check them all first.
VCOS_API void vxCheckPropertyValue(const vxArray* array, vxIndex index, const char* propertyName,
                                   const vxArray* value);

// The same for a property the caller found itself (a look-up kept from an
// earlier call): no name is interned or looked up.
VCOS_API vxArray* vxGetProperty(const vxArray* array, vxIndex index, const COSPropInfo* property);
VCOS_API void vxSetProperty(vxArray* array, vxIndex index, const COSPropInfo* property, const vxArray* value);
