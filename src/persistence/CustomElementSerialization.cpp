// Struct fields from a file onto an object (CustomElementSerialization.h).
#include "sgutils/persistence/CustomElementSerialization.h"

#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ElementBasedContent.h"
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

matrix::unique_vxArray CustomElementSerialization::getElementBasedSerializationContent(
    const object_serialization::ElementBasedContent& content) {
  matrix::unique_vxArray out(vxCreateStructMatrix(1, 1, 0, nullptr));
  for (std::size_t i = 0; i < content.size(); ++i) {
    const int field = vxAddField(out.get(), content.nameAt(i));
    const vxArray* value = content.valueAt(i);
    vxSetFieldByNumber(out.get(), 0, field, value ? vxDuplicateArray(value) : nullptr);
  }
  return out;
}

void CustomElementSerialization::createStructFromUnitsAndValue(const object_serialization::ElementBasedContent* content,
                                                               const char* name, const char* unitsName,
                                                               vxArray* structure) {
  if (!content || !structure || !content->hasProperty(name)) return;
  const char* names[] = {"Units", "Value"};
  matrix::unique_vxArray pair(vxCreateStructMatrix(1, 1, 2, names));
  const vxArray* units = unitsName ? content->getValue(unitsName) : nullptr;
  vxSetFieldByNumber(pair.get(), 0, 0, units ? vxDuplicateArray(units) : vxCreateDoubleMatrix(0, 0, vxREAL));
  vxSetFieldByNumber(pair.get(), 0, 1, vxDuplicateArray(content->getValue(name)));
  const int field = vxAddField(structure, name);
  vxSetFieldByNumber(structure, 0, field, pair.release());
}

}  // namespace sgutils
