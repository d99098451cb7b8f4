// Text conversions. Char arrays hold UTF-16; these functions speak UTF-8.
#pragma once

#include <string>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// The text of a char row or a scalar string; raises for anything else.
VX_API std::string vxArrayToStdString(const vxArray* array);
// The same as a C string allocated with vxMallocEx; the caller frees it with
// vxFreeEx. Returns null for an array that is not text.
VX_API char* vxCreateCStrFromArray(const vxArray* array);
