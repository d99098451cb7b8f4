// The text argument of the library's built-in functions: a char row or a
// scalar string. A missing string raises "VANTEL:string:MissingNotSupported",
// anything else "VANTEL:string:MustBeStringScalarOrCharacterVector".
#pragma once

#include <string>

#include "vx/vxTypes.h"

namespace sgutils::builtins {

std::string readTextArgument(const vxArray* value);

}  // namespace sgutils::builtins
