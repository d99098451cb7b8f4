// The serializer's step for classes that restore themselves element by
// element: a class deriving from the mixin CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME
// gets its saved elements as an ElementBasedContent instead of having them
// set one by one, takes them in through the deserializer registered for it,
// and is finished by its "finalizeIncomingObject".
#pragma once

#include <functional>

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vcos/COSValue.h"
#include "vcos/ElementBasedContent.h"

class COSClass;
class COSDataTypePtr;

namespace object_serialization {

// The mixin of classes that load element by element.
inline constexpr const char CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME[] = "vantel.mixin.CustomElementSerialization";

// Takes a restored object's saved elements in.
using ElementDeserializer = std::function<void(const COSInterfacePtr& object, const ElementBasedContent& content)>;

// Registers how objects of the class, and of its subclasses that register
// none of their own, take their elements in; an empty function removes it.
VCOS_API void setElementDeserializer(COSID classId, ElementDeserializer deserializer);

// Restores `object` of class `cls` from `value`, a 1-by-1 struct of its saved
// elements: the registered deserializer of the nearest class takes them (with
// none, each element is set on the property of its name, past access checks,
// and one that fits no property is passed over), then the class's
// "finalizeIncomingObject" runs with the object, and what it returns is
// dropped. Errors of the deserializer and of the finishing method pass
// through. `type` is the data type of `value`, when the caller has one.
// The other way: a new 1-by-1 struct of the object's stored elements, one
// field per property that is neither transient nor dependent and has an
// array form, in the class's order, the caller's to free. A class whose
// customSave keeps its elements this way (and answers true) gets them back
// through customizeAndDeserialize.
VCOS_API vxArray* collectElements(const COSInterfacePtr& object);

VCOS_API void customizeAndDeserialize(const COSInterfacePtr& object, COSClass* cls, COSValue value,
                                      const COSDataTypePtr& type);

}  // namespace object_serialization
