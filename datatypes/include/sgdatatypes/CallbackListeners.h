// Listeners that run the callback stored in a property of the event's
// source: the listener of "ButtonDownFcn" runs whatever that property of the
// clicked object holds at the moment of the click. The property may hold a
// "vantel.graphics.datatype.Callback" value or any array that converts to
// one; an object without the property, or with an empty callback, is
// skipped.
#pragma once

#include <memory>

#include "sgdatatypes/DatatypesExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

class COSListenerOp;

namespace graphics::datatype {

// A listener to attach to an object for an event. With `passEventData` the
// callback receives the event's data; without it, null. With `allowRecursion`
// the listener runs again when its callback fires the same event; without
// it, such a nested firing is skipped. It also runs for a source that is being
// deleted (a "DeleteFcn" listener must). The result holds the only reference.
// While the callback runs, CallbackContext names its source (gcbo). With
// Interruption::Honour a callback that arrives while a non-interruptible one
// runs is queued or dropped by its object's BusyAction (CallbackContext.h);
// with Ignore it always runs, as creation and deletion callbacks do.
enum class Interruption : bool { Ignore, Honour };
SGDATATYPES_API COSInterfacePtr createListener(const char* propertyName, bool passEventData, bool allowRecursion,
                                               Interruption interruption = Interruption::Ignore);
// The same for a property name already interned (one listener per new
// object: "DeleteFcn").
SGDATATYPES_API COSInterfacePtr createListener(COSID propertyName, bool passEventData, bool allowRecursion,
                                               Interruption interruption = Interruption::Ignore);

// The operation of such a listener alone (owned by the caller), for a
// listener that runs it for some sources only.
SGDATATYPES_API std::unique_ptr<COSListenerOp> createCallbackOp(COSID propertyName, bool passEventData,
                                                                Interruption interruption = Interruption::Ignore);

// The same, for attaching to a class (COSClass::addClassListener), so that
// it runs for every instance; instances whose class lacks the property, and
// instances whose deletion has begun (an object deleted while it was being
// created), are skipped.
SGDATATYPES_API COSInterfacePtr createClassListener(const char* propertyName, bool passEventData,
                                                    bool allowRecursion,
                                                    Interruption interruption = Interruption::Ignore);

}  // namespace graphics::datatype
