// Not installed. Properties added to a graphics object at run time (addprop)
// in a file: each one marked to be stored (not transient) is written in the
// object's record as one element of a struct array with the fields "Name",
// "Type" (its data type's name), "Value", "Visible" and, when some property
// of the object has attributes that differ from a newly added one's,
// "Attributes" (SavedPropertyAttributes.h); and made again on the loaded
// object with its type, visibility, value and attributes. The stored
// defaults' own property ("InternalDefaultPropMap") has a field of its own
// and is not among them.
#pragma once

#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

class COSInterface;

namespace sgutils::persistence {

// The object's stored run-time properties as that struct array (1-by-n), or
// null when it has none. A property whose type has no array form is left
// out, as such class properties are.
matrix::unique_vxArray savedDynamicProperties(COSInterface* object);

// Makes the saved properties on the loaded object and sets their values
// past access checks, then gives them their saved attributes. A value that
// no longer converts or that its property refuses is logged and dropped, as
// a class property's is (the property stays); a name the class has a
// property of its own for is passed over. A list of the wrong shape raises
// "VANTEL:sg:load:BadDynamicProperties", a type this system lacks
// "VANTEL:sg:load:UnknownPropertyType", an attribute this system lacks
// "UnknownPropertyAttribute" and one of the wrong type
// "BadPropertyAttribute".
void restoreDynamicProperties(const COSInterfacePtr& object, const vxArray* saved);

}  // namespace sgutils::persistence
