// Comparing arrays.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// True when the arrays have the same class, dimensions and elements, compared
// recursively for cells and structs (field order does not matter) and by
// identity for objects and function handles. With nanEqual, NaN equals NaN.
VX_API bool vxAreMatricesEqualNanOptional(const vxArray* a, const vxArray* b, bool nanEqual);
