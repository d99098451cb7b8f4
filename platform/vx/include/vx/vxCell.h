// Cell arrays. vxSetCell takes ownership of the value (and destroys the one it
// replaces); vxGetCell returns a borrowed pointer, or null for an empty slot.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

VX_API vxArray* vxGetCell(const vxArray* array, vxIndex index);
VX_API void vxSetCell(vxArray* array, vxIndex index, vxArray* value);
