// Array conversions of the default store (DefaultValueConversion.h).
#include "src/defaults/DefaultValueConversion.h"

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"
#include "vx/vxCreate.h"

namespace sgutils::detail {

namespace {

const COSID& anyId() {
  static const COSID id("any");
  return id;
}

// As the constructor input does: array-valued types without a conversion
// take the array itself.
COSTypeConversion* fromArray(const COSDataTypePtr& type) {
  return COSTypeRepository::getArrayConversion(*type, /*toArray=*/false);
}

[[noreturn]] void noConversion(const char* from, const COSDataTypePtr& type, const char* to) {
  throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", from, to ? to : type.getID().c_str());
}

}  // namespace

matrix::unique_vxArray typedToArray(const COSDataTypePtr& type, COSValue value) {
  if (type->isVANTELArrayType()) {
    const vxArray* array = value.asPointer<const vxArray>();
    return matrix::unique_vxArray(array ? vxCreateSharedCopyNotOnArrayList(array) : nullptr);
  }
  COSTypeConversion* back = COSTypeRepository::getConversion(type.getID(), anyId());
  if (!back) noConversion(type.getID().c_str(), type, "any");
  return matrix::unique_vxArray(back->convert(value).asPointer<vxArray>());
}

matrix::unique_vxArray validatedCopy(const COSDataTypePtr& type, const vxArray* value) {
  COSTypeConversion* forward = fromArray(type);
  if (!forward) {
    if (type->isVANTELArrayType()) return matrix::unique_vxArray(value ? vxCreateSharedCopyNotOnArrayList(value) : nullptr);
    noConversion("any", type, nullptr);
  }
  const ConvertedValue typed(type, forward->convert(COSValue(value)));
  return typedToArray(type, typed.get());
}

void setFromArray(const COSClient* client, COSInterface* object, const COSPropInfo* property, const vxArray* value) {
  const COSDataTypePtr type = property->getDataType();
  COSTypeConversion* forward = fromArray(type);
  if (!forward) {
    if (!type->isVANTELArrayType()) noConversion("any", type, nullptr);
    object->setPropertyValue(client, property, COSValue(value));
    return;
  }
  const ConvertedValue typed(type, forward->convert(COSValue(value)));
  object->setPropertyValue(client, property, typed.get());
}

}  // namespace sgutils::detail
