// Not installed; compiled into the sgsh executable, which links the
// graphics classes (the sgshell library does not).
#pragma once

namespace sgsh::builtins {

// Registers figure, axes, line, plot, gca, hold, findobj, ... and wraps get
// and set so that they take default names ("defaultLineLineWidth") on
// graphics objects. Call after the graphics classes are registered.
void registerGraphicsBuiltins();

}  // namespace sgsh::builtins
