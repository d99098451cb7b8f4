// Puts the fields of a struct that a file held back onto an object: each
// field names a property, whose value is converted from the field's array
// to the property's type and set on the property directly, past access
// checks (the object is being restored, not set by a user).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSValue.h"

struct vxArray;

namespace sgutils {

class SGUTILS_API CustomElementSerialization {
 public:
  // Fields in field order, from element 0. A field that names no property
  // raises "VANTEL:sg:InvalidProperty"; a value the property's type refuses
  // raises the type's error. Fields before the failing one stay set.
  static void copyValuesFromStructToObject(const COSInterfacePtr& object, const vxArray* structure);
  // The same with the struct as a property value word.
  static void copyValuesFromStructToObject(const COSInterfacePtr& object, COSValue structure);
};

}  // namespace sgutils
