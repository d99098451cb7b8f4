// Not installed; compiled into the sgsh executable with the graphics
// built-ins.
#pragma once

namespace sgsh::builtins {

// Registers exportstats and exportviews, which report what the figures'
// export views drew. Call after the graphics classes are registered.
void registerExportViewBuiltins();

}  // namespace sgsh::builtins
