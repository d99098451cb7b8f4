// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers savefig and openfig, and lets save and load keep graphics
// objects. Call after the graphics classes are registered.
void registerGraphicsFileBuiltins();

}  // namespace sgsh::builtins
