// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers getThemeFromParentBuiltin and refreshThemedValue. Call after the
// graphics classes are registered.
void registerThemeValueBuiltins();

}  // namespace sgsh::builtins
