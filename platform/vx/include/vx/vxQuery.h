// Class and shape of an array.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

VX_API vxClassID vxGetClassID(const vxArray* array);
// "double", "cell", "struct", "logical", "char", "string", "function_handle",
// "int32", ...; for an object array the name of its class.
VX_API const char* vxGetClassName(const vxArray* array);
// True when the array is of that class; for object arrays, also when its
// class derives from it.
VX_API bool vxIsA(const vxArray* array, const char* className);

VX_API bool vxIsDouble(const vxArray* array);
VX_API bool vxIsSingle(const vxArray* array);
VX_API bool vxIsNumeric(const vxArray* array);
VX_API bool vxIsInteger(const vxArray* array);
VX_API bool vxIsComplex(const vxArray* array);
VX_API bool vxIsLogical(const vxArray* array);
VX_API bool vxIsChar(const vxArray* array);
VX_API bool vxIsString(const vxArray* array);
VX_API bool vxIsCell(const vxArray* array);
VX_API bool vxIsStruct(const vxArray* array);
VX_API bool vxIsFunctionHandle(const vxArray* array);
VX_API bool vxIsObject(const vxArray* array);
VX_API bool vxIsEmpty(const vxArray* array);
VX_API bool vxIsScalar(const vxArray* array);
// 1-by-n or n-by-1 (n >= 1).
VX_API bool vxIsVector(const vxArray* array);
VX_API bool vxIsLogicalScalar(const vxArray* array);
VX_API bool vxIsLogicalScalarTrue(const vxArray* array);
// True for a 1-by-1 logical (null included: false), whose value goes to
// `value`: the one question a set of an on/off value asks of its input.
VX_API bool vxGetLogicalScalar(const vxArray* array, bool* value) noexcept;
// An object array whose class is a heterogeneous root or below one.
VX_API bool vxIsHeterogeneousArray(const vxArray* array);

VX_API vxSize vxGetM(const vxArray* array);
// Product of all dimensions after the first.
VX_API vxSize vxGetN(const vxArray* array);
VX_API vxSize vxGetNumberOfDimensions(const vxArray* array);
VX_API const vxSize* vxGetDimensions(const vxArray* array);
VX_API vxSize vxGetNumberOfElements(const vxArray* array);
VX_API vxSize vxGetElementSize(const vxArray* array);
// Reshapes; the element count must stay the same unless the array is of a
// class whose storage can grow (then new elements are zero or empty).
VX_API void vxSetDimensions(vxArray* array, const vxSize* dims, vxSize ndim);
VX_API void vxSetM(vxArray* array, vxSize m);
VX_API void vxSetN(vxArray* array, vxSize n);
