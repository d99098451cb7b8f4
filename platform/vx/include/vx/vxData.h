// Element data of numeric, logical, char and string arrays.
//
// Readers take a const array and never unshare. Writers (the non-const
// forms) unshare the payload first, so a write never shows through a copy.
#pragma once

#include <complex>
#include <memory>
#include <optional>
#include <string>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

class vxFunctionHandleData;

// Raw element storage: doubles for double arrays, std::complex<double> for
// complex double arrays, and so on per class.
VX_API const void* vxGetData(const vxArray* array);
VX_API void* vxGetData(vxArray* array);
VX_API const double* vxGetPr(const vxArray* array);
VX_API double* vxGetPr(vxArray* array);
VX_API const std::complex<double>* vxGetComplexDoubles(const vxArray* array);
VX_API std::complex<double>* vxGetComplexDoubles(vxArray* array);
VX_API const bool* vxGetLogicals(const vxArray* array);
VX_API bool* vxGetLogicals(vxArray* array);
VX_API const vxChar* vxGetChars(const vxArray* array);
VX_API vxChar* vxGetChars(vxArray* array);

// The first element of a numeric, logical or char array as a double; raises
// for an empty array or one of another class.
VX_API double vxGetScalar(const vxArray* array);
// The same, rounded towards zero into an int; raises when out of range.
VX_API int vxGetScalarInt(const vxArray* array);

// String arrays: an element is text or missing.
VX_API std::optional<std::u16string> vxGetStringElement(const vxArray* array, vxIndex index);
VX_API void vxSetStringElement(vxArray* array, vxIndex index, std::optional<std::u16string> value);

// Function handles: the language's own data behind the handle.
VX_API std::shared_ptr<const vxFunctionHandleData> vxGetFunctionHandle(const vxArray* array);
