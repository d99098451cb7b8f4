// The compact representation of an array of objects where a display has one
// line or one column cell for it (a field of a struct, an element of a
// cell): its dimensions and its class, "1x1 Line". Classes that provide a
// compact display ask for it by the function name
// "vantel.display.DimensionsAndClassNameRepresentation", which
// registerBuiltinClasses registers with the function dispatcher.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

namespace vcos {

// The dispatcher's name of dimensionsAndClassNameRepresentation.
inline constexpr const char* kDimensionsAndClassNameRepresentation =
    "vantel.display.DimensionsAndClassNameRepresentation";

// (objects, displayConfiguration, name, value, ...) to one char row. The
// configuration is accepted as it is (both forms give the same text). The
// options: "UseSimpleName" (a logical or number scalar; true keeps the class
// name after its last dot) and "ClassName" (text that replaces the class
// name). Raises "VANTEL:vcos:display:BadOption" for an option list that is
// not name-value pairs, "VANTEL:vcos:display:UnknownOption" for another
// name.
VCOS_API void dimensionsAndClassNameRepresentation(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]);

}  // namespace vcos
