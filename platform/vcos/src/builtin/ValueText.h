// Not installed; internal to the built-in classes of the class-object system.
//
// One-line texts of values and dimensions for the default object display.
#pragma once

#include <string>

#include "vx/vxTypes.h"

namespace vcos::builtin {

// "1x3", "2x2x2".
std::string dimensionsText(const vxArray* a);
// A short form of a value: 'text', 3.5, [1 2 3], [2x2 double], {1x2 cell},
// [1x1 ClassName], @handle.
std::string valueText(const vxArray* a);

}  // namespace vcos::builtin
