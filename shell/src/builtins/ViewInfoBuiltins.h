// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers viewinfo, which shows what a view is told of an object's
// surroundings. Call after the graphics classes are registered.
void registerViewInfoBuiltins();

}  // namespace sgsh::builtins
