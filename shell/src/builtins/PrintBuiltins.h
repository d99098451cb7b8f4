// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers print, exportgraphics and saveas, which write a figure as a
// PNG, SVG or PDF picture. Call after the graphics classes are registered.
void registerPrintBuiltins();

}  // namespace sgsh::builtins
