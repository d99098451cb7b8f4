// Helpers for classes that restore themselves element by element (their
// deserializer, object_serialization::setElementDeserializer): the saved
// content as a struct, a value with its units as a struct, and the fields
// of a struct put back onto an object: each field names a property, whose
// value is converted from the field's array to the property's type and set
// on the property directly, past access checks (the object is being
// restored, not set by a user).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSValue.h"
#include "vx/matrix.h"

struct vxArray;

namespace object_serialization {
class ElementBasedContent;
}

namespace sgutils {

class SGUTILS_API CustomElementSerialization {
 public:
  // Fields in field order, from element 0. A field that names no property
  // raises "VANTEL:sg:InvalidProperty"; a value the property's type refuses
  // raises the type's error. Fields before the failing one stay set.
  static void copyValuesFromStructToObject(const COSInterfacePtr& object, const vxArray* structure);
  // The same with the struct as a property value word.
  static void copyValuesFromStructToObject(const COSInterfacePtr& object, COSValue structure);

  // The saved elements as a new 1-by-1 struct, a field per element in saved
  // order (copies of the values); a content without elements gives a struct
  // without fields.
  static matrix::unique_vxArray getElementBasedSerializationContent(
      const object_serialization::ElementBasedContent& content);
  // When the content has the element `name`: adds to `structure` (a 1-by-1
  // struct) the field `name` holding struct('Units', u, 'Value', v), with the
  // saved value of `name` and of `unitsName` (an empty double when that was
  // not saved). Otherwise nothing.
  static void createStructFromUnitsAndValue(const object_serialization::ElementBasedContent* content,
                                            const char* name, const char* unitsName, vxArray* structure);
};

}  // namespace sgutils
