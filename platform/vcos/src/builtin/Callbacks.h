// Not installed; internal to the built-in classes of the class-object system.
//
// What a listener's callback may be, and how it runs: a function handle, the
// name of a function, or a cell whose first element is either and whose other
// elements are passed after the source and the event data.
#pragma once

#include "vx/vxTypes.h"

namespace vcos::builtin {

// Whether the value is a callback that runCallback can run (empty included).
bool isCallback(const vxArray* callback);
// Calls it with the inputs and no output. An empty callback does nothing.
void runCallback(const vxArray* callback, int nargs, const vxArray* const args[]);

}  // namespace vcos::builtin
