// Feature access by name for the library and the language. Every function
// raises "VANTEL:feature:UnknownFeature" for a name that was never
// registered; look-ups take no allocation.
#pragma once

#include <string_view>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

namespace foundation::feature {

// True when the feature's value is not zero.
FOUNDATION_API bool isOn(std::string_view name);
FOUNDATION_API int value(std::string_view name);
// Stores the value, then calls the feature's onSet with it (if it has one).
FOUNDATION_API void set(std::string_view name, int value);
// Runs the feature's command form; "VANTEL:feature:NoCommandForm" when it has none.
FOUNDATION_API void call(std::string_view name, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);

}  // namespace foundation::feature
