// Struct fields from a file onto an object (CustomElementSerialization.h).
#include "sgutils/persistence/CustomElementSerialization.h"

#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vx.h"

using foundation::core::except::Error;

namespace sgutils {

void CustomElementSerialization::copyValuesFromStructToObject(const COSInterfacePtr& object,
                                                             const vxArray* structure) {
  if (!object || !structure || !vxIsStruct(structure) || vxIsEmpty(structure)) return;
  const int fields = vxGetNumberOfFields(structure);
  for (int f = 0; f < fields; ++f) {
    const char* name = vxGetFieldNameByNumber(structure, f);
    COSInterfacePtr found;
    object->findProperty(found, COSID(name));
    auto* property = dynamic_cast<COSPropInfo*>(found.get());
    if (!property) throw Error("VANTEL:sg:InvalidProperty", name, object->getClass()->getName());
    const vxArray* field = vxGetFieldByNumber(structure, 0, f);
    const COSDataTypePtr type = property->getDataType();
    COSTypeConversion* conversion = type ? COSTypeRepository::getArrayConversion(*type, /*toArray=*/false) : nullptr;
    // An array-typed property without a conversion takes the array itself.
    if (!conversion) {
      property->setValue(object.get(), COSValue(const_cast<vxArray*>(field)));
      continue;
    }
    const COSValue converted = conversion->convert(COSValue(const_cast<vxArray*>(field)));
    try {
      property->setValue(object.get(), converted);
    } catch (...) {
      type->destroy(converted);
      throw;
    }
    type->destroy(converted);
  }
}

void CustomElementSerialization::copyValuesFromStructToObject(const COSInterfacePtr& object, COSValue structure) {
  copyValuesFromStructToObject(object, structure.asPointer<const vxArray>());
}

}  // namespace sgutils
