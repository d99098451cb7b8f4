// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers copyobj. Call after the graphics classes are registered.
void registerCopyBuiltins();

}  // namespace sgsh::builtins
