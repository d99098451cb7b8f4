// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers theme. Call after the graphics classes are registered.
void registerThemeShellBuiltins();

}  // namespace sgsh::builtins
