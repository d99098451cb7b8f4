// The built-in functions of theme objects, exported under these names so
// that the function dispatcher finds them in the loaded library:
//   lightThemeBuiltin()               a new theme, style light
//   darkThemeBuiltin()                a new theme, style dark
//   getAttributeValue(theme, name)    the value the theme gives the attribute
//   singleColorOverride(theme, value) a copy of the theme with every colour
//                                     replaced by `value` (three numbers), or
//                                     with that override removed ("remove")
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vx/vxTypes.h"

extern "C" {
SGUTILS_API void lightThemeBuiltin(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
SGUTILS_API void darkThemeBuiltin(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
SGUTILS_API void getAttributeValue(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
SGUTILS_API void singleColorOverride(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
}
