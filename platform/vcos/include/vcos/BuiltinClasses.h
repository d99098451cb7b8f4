// The classes that the class-object system itself provides: "handle",
// "dynamicprops", "event.EventData", "event.PropertyEvent", "event.listener",
// "event.proplistener", "vantel.mixin.Heterogeneous",
// "vantel.mixin.CustomDisplay" and "vantel.mixin.util.PropertyGroup".
#pragma once

#include "foundation/PlatformExport.h"

namespace vcos {

// Registers the built-in classes with their packages; each class is built
// when first needed. Runs once: later calls do nothing. Call it at start-up,
// before any of these classes is named.
VCOS_API void registerBuiltinClasses();

}  // namespace vcos
