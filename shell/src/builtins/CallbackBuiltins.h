// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers gcbo, gcbf and notify. Call after the graphics classes are
// registered.
void registerCallbackBuiltins();

}  // namespace sgsh::builtins
