// Not installed. The dynamic property "InternalDefaultPropMap" that carries
// an object's stored defaults through a file: customSave fills it before a
// save, the loader fills it from the file, and the object's first
// DefaultProp after load moves it into the store and removes it.
#pragma once

#include "vcos/COSInterfacePtr.h"

class COSPropInfo;
struct vxArray;

namespace sgutils::persistence {

// The object's "InternalDefaultPropMap" (type "any", stored, hidden); made
// and added when `make` is true and the object has none. Null otherwise.
COSPropInfo* savedDefaultsProperty(const COSInterfacePtr& object, bool make);

// Puts a saved defaults map read from a file on the object, through the
// property above, and marks the object as loaded from a file so that its
// first DefaultProp takes the map. Returns false when the object has no
// Graphics block (the map is then dropped).
bool restoreSavedDefaults(const COSInterfacePtr& object, const vxArray* map);

// Moves a map still waiting in the property into the store (through
// DefaultProp), for an object no default look-up reached during its load.
void takeWaitingSavedDefaults(const COSInterfacePtr& object);

}  // namespace sgutils::persistence
