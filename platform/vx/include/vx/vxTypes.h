// Basic types of the array API: class ids, sizes, element types, scopes.
#pragma once

#include <cstddef>
#include <cstdint>

// The array value. Opaque to callers: every access goes through the vx*
// functions.
struct vxArray;

using vxSize = std::size_t;
using vxIndex = std::size_t;
using vxChar = char16_t;   // char arrays are UTF-16
using vxLogical = bool;

// Class ids. The numbering is fixed: the library and saved files rely on it.
enum vxClassID : int {
  vxUNKNOWN_CLASS = 0,
  vxCELL_CLASS = 1,
  vxSTRUCT_CLASS = 2,
  vxLOGICAL_CLASS = 3,
  vxCHAR_CLASS = 4,
  vxVOID_CLASS = 5,
  vxDOUBLE_CLASS = 6,
  vxSINGLE_CLASS = 7,
  vxINT8_CLASS = 8,
  vxUINT8_CLASS = 9,
  vxINT16_CLASS = 10,
  vxUINT16_CLASS = 11,
  vxINT32_CLASS = 12,
  vxUINT32_CLASS = 13,
  vxINT64_CLASS = 14,
  vxUINT64_CLASS = 15,
  vxFUNCTION_CLASS = 16,
  vxOPAQUE_CLASS = 17,
  vxOBJECT_CLASS = 18,
  vxSTRING_CLASS = 19,
};

enum vxComplexity : int { vxREAL = 0, vxCOMPLEX = 1 };

// Array scopes. An array that the library keeps past a call has
// vxSCOPE_PERSISTENT (6), which the interpreter's cleanup leaves alone.
enum vxArrayScope : int {
  vxSCOPE_TEMPORARY = 0,
  vxSCOPE_LOCAL = 1,
  vxSCOPE_PERSISTENT = 6,
};
