// The built-in functions of the colour data, exported under these names so
// that the function dispatcher finds them in the loaded library:
//   colorOrderValues(name)   the named colour order as an N-by-3 double array
//   lumenColormapValues()    the default colormap as a 256-by-3 double array
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vx/vxTypes.h"

extern "C" {
SGUTILS_API void colorOrderValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
SGUTILS_API void lumenColormapValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
}
