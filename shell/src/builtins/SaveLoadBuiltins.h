// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers save and load of workspace variables.
void registerSaveLoadBuiltins();

}  // namespace sgsh::builtins
