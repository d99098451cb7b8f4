// A class listener that stands for a listener of each instance.
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInternedBase.h"

class COSClass;
class COSListener;

namespace vcos {

// Adds to `cls` a listener that every instance of it and of its subclasses
// has as though it had been attached to the instance before any other: it
// runs among the instance's own listeners, first of its priority. One
// listener then stands for a listener per object (its op may skip the
// objects that did not ask for it). No access check: the class's own code
// adds it. It stays for the life of the class.
VCOS_API void addFirstInstanceListener(COSClass* cls, COSID eventId, COSListener* listener, int priority = 0);

}  // namespace vcos
