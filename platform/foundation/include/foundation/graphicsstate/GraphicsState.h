// Process-wide answers about the kind of runtime the graphics code runs in,
// with the values a desktop-less Linux runtime gives:
//   usesJava()              false: there is no Java virtual machine.
//   sgIsProduction()        false: this is a development runtime, so start-up
//                           ends on "never check for Java".
//   isDecaf()               false: the full runtime, not a reduced one.
//   sgSealGraphicsClasses() true: the closed lists of allowed subclasses of
//                           the root graphics classes apply.
// All are plain values with setters for tests, written between commands.
#pragma once

#include "foundation/PlatformExport.h"
#include "foundation/graphicsstate/FigureState.h"
#include "foundation/graphicsstate/OpenGLState.h"

namespace GraphicsState {

FOUNDATION_API bool usesJava() noexcept;
// Changes whether Java is used. With `ifUnlocked` true the change is refused
// while the Java use is locked (see lockUsesJava); with false it always
// applies. Start-up first asks politely, then insists.
FOUNDATION_API void setUsesJava(bool value, bool ifUnlocked) noexcept;
// Locks the Java use, as a runtime started with Java required would; false by default.
FOUNDATION_API void lockUsesJava(bool locked) noexcept;

FOUNDATION_API bool sgIsProduction() noexcept;
FOUNDATION_API void setSgIsProduction(bool value) noexcept;

FOUNDATION_API bool isDecaf() noexcept;
FOUNDATION_API void setIsDecaf(bool value) noexcept;

FOUNDATION_API bool sgSealGraphicsClasses() noexcept;
FOUNDATION_API void setSgSealGraphicsClasses(bool value) noexcept;

}  // namespace GraphicsState
