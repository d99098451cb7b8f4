// Creating and destroying arrays, and shared copies.
//
// Ownership: a vxArray* returned by a create call belongs to the caller, who
// ends it with vxDestroyArray (or matrix::destroyArray, or an owning
// matrix::unique_vxArray). A shared copy shares the payload of its source
// until either side is written; destroying one side leaves the other intact.
#pragma once

#include <memory>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

class vxFunctionHandleData;

// Numeric, logical and char arrays are created zero-filled.
VX_API vxArray* vxCreateDoubleMatrix(vxSize m, vxSize n, vxComplexity complexity);
VX_API vxArray* vxCreateDoubleScalar(double value);
VX_API vxArray* vxCreateNumericMatrix(vxSize m, vxSize n, vxClassID classId, vxComplexity complexity);
VX_API vxArray* vxCreateNumericArray(vxSize ndim, const vxSize* dims, vxClassID classId, vxComplexity complexity);
VX_API vxArray* vxCreateLogicalScalar(bool value);
VX_API vxArray* vxCreateLogicalMatrix(vxSize m, vxSize n);
VX_API vxArray* vxCreateLogicalArray(vxSize ndim, const vxSize* dims);
VX_API vxArray* vxCreateCharArray(vxSize ndim, const vxSize* dims);
// A 1-by-n char row from UTF-8 text; a null pointer gives a 0-by-0 char array.
VX_API vxArray* vxCreateString(const char* utf8);
VX_API vxArray* vxCreateCellMatrix(vxSize m, vxSize n);
VX_API vxArray* vxCreateCellArray(vxSize ndim, const vxSize* dims);
VX_API vxArray* vxCreateStructMatrix(vxSize m, vxSize n, int nfields, const char** fieldNames);
VX_API vxArray* vxCreateStructArray(vxSize ndim, const vxSize* dims, int nfields, const char** fieldNames);
// A string array (class "string") of m-by-n missing elements.
VX_API vxArray* vxCreateStringArray(vxSize m, vxSize n);
// A 1-by-1 function handle; the language supplies what the handle holds.
VX_API vxArray* vxCreateFunctionHandle(std::shared_ptr<const vxFunctionHandleData> data);

// Copies. A shared copy shares the payload until written; a copy "not on the
// array list" is the same for this runtime (there is no interpreter array list
// to record it in). vxDuplicateArray is a deep copy.
VX_API vxArray* vxCreateSharedDataCopy(const vxArray* source);
VX_API vxArray* vxCreateSharedCopyNotOnArrayList(const vxArray* source);
VX_API vxArray* vxDuplicateArray(const vxArray* source);
// Makes the top level of the array private: its payload stops being shared,
// while cell and struct elements stay shared with the former copies.
VX_API void vxUnshareShallow(vxArray* array);

// Destroys one reference: the caller's array header and its share of the payload.
// References taken with intrusive_ptr_add_ref go first. An element that a
// cell or struct holds (a pointer lent by vxGetCell or vxGetField) belongs to
// its container: destroying it does nothing, and the container frees it when
// the slot is replaced or the container goes. Counts are plain integers:
// arrays are used on the interpreter's thread.
VX_API void vxDestroyArray(vxArray* array);

// Scope: vxSCOPE_PERSISTENT (6) marks an array kept past a call.
VX_API void vxSetArrayScope(vxArray* array, int scope);
VX_API int vxGetArrayScope(const vxArray* array);
// True for an array that holds class-system objects at any depth (object
// arrays, and cells and structs that contain them).
VX_API bool vxHasCycleDetectionContents(const vxArray* array);
