// Cell arrays. vxSetCell takes ownership of the value (and destroys the one it
// replaces); vxGetCell returns a borrowed pointer, or null for an empty slot.
// A value that another cell or struct holds must not be stored again: store a
// shared copy of it. When vxSetCell raises, the value stays with the caller.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

VX_API vxArray* vxGetCell(const vxArray* array, vxIndex index);
VX_API void vxSetCell(vxArray* array, vxIndex index, vxArray* value);
