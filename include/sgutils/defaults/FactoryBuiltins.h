// The factory values of graphics classes as built-in functions, exported
// under these names so that the function dispatcher finds them in the
// loaded library:
//   classFactoryValues(fullClassName)  a struct of the factory value of each
//       visible property of that class that allows defaults and that the
//       public client may read, fields "factory<Short><Prop>" sorted by name;
//       no output for a class without a short name
//   rootFactoryValues()                the same for every class of the
//       class-name map in one struct; also registered with the dispatcher
//       as "rootfactoryvalues", the name the root's get of "factory" calls
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vx/vxTypes.h"

extern "C" {
SGUTILS_API void classFactoryValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
SGUTILS_API void rootFactoryValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);
}
