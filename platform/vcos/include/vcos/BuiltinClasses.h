// The classes that the class-object system itself provides: "handle",
// "dynamicprops", "event.EventData", "event.PropertyEvent", "event.listener",
// "event.proplistener", "vantel.mixin.Heterogeneous",
// "vantel.mixin.CustomDisplay" and "vantel.mixin.util.PropertyGroup".
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"

class COSClass;
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

// Makes native event data an object of the event data class `cls` (a class
// derived from "event.EventData"), with the data's source and event name as
// its Source and EventName, so that a callback receives it as it is, with the
// properties of that class. Call it before the data is sent. Raises
// "VANTEL:vcos:NotEventDataClass" for another class.
VCOS_API void bindEventData(COSEventData* data, COSClass* cls);

}  // namespace vcos
