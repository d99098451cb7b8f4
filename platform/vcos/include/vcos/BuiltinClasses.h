// The classes that the class-object system itself provides: "handle",
// "dynamicprops", "event.EventData", "event.PropertyEvent", "event.listener",
// "event.proplistener", "vantel.mixin.Heterogeneous",
// "vantel.mixin.CustomDisplay" and "vantel.mixin.util.PropertyGroup".
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"

class COSEventData;

namespace vcos {

// Registers the built-in classes with their packages; each class is built
// when first needed. Runs once: later calls do nothing. Call it at start-up,
// before any of these classes is named.
VCOS_API void registerBuiltinClasses();

// The event data object that a callback of a language receives for an event
// of `source`: data that is already an object of an event data class as it
// is, core data described by a new "event.EventData" (or, when it names a
// property, "event.PropertyEvent"); null for no data.
VCOS_API COSInterfacePtr eventDataObject(COSInterface* source, COSEventData* data);

}  // namespace vcos
