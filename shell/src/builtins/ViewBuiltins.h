// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers viewdirty, hit and pick. Call after the graphics classes are registered.
void registerViewBuiltins();

}  // namespace sgsh::builtins
