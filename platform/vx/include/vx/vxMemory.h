// Raw memory handed across the array API.
#pragma once

#include <cstddef>

#include "foundation/PlatformExport.h"

VX_API void* vxMallocEx(std::size_t bytes);
VX_API void vxFreeEx(void* memory);
