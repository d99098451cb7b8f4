// Property get and set on an element of an object array, by name, through the
// ordinary public client path (access checks, listeners, set methods).
// Implemented by the class-object system.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// A new array owned by the caller.
VX_API vxArray* vxGetProperty(const vxArray* array, vxIndex index, const char* propertyName);
// The value is borrowed.
VX_API void vxSetProperty(vxArray* array, vxIndex index, const char* propertyName, const vxArray* value);
// Raises what vxSetProperty would raise for a deleted object, an unknown
// property or a value the property's type refuses, without setting
// anything: callers that set several values check them all first.
VX_API void vxCheckPropertyValue(const vxArray* array, vxIndex index, const char* propertyName, const vxArray* value);
