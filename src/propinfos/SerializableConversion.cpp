// The conversion of a serializable twin: value -> array -> old handles
// removed -> value, done only when the walk changed anything.
#include "sgutils/propinfos/SerializableConversion.h"

#include "foundation/core/except/Error.h"
#include "sgutils/persistence/UDDConverter.h"
#include "vcos/COSDataType.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vx.h"

namespace sgutils {

namespace {

const COSTypeConversion& lookUp(const COSDataType& type, bool toArray) {
  COSTypeConversion* c = COSTypeRepository::getArrayConversion(type, toArray);
  if (!c) {
    const std::string& id = type.getID().str();
    throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", toArray ? id : "any", toArray ? "any" : id);
  }
  return *c;
}

}  // namespace

const COSTypeConversion& SerializableConversion::toArray(const COSDataType& type) const {
  if (!toArray_) toArray_ = &lookUp(type, /*toArray=*/true);
  return *toArray_;
}

const COSTypeConversion& SerializableConversion::fromArray(const COSDataType& type) const {
  if (!fromArray_) fromArray_ = &lookUp(type, /*toArray=*/false);
  return *fromArray_;
}

COSValue SerializableConversion::through(const COSDataType& type, COSValue value, Walk walk) const {
  if (type.isVANTELArrayType()) {
    auto* array = value.asPointer<vxArray>();
    vxArray* result = walk(array);
    return result == array ? value : COSValue(result);
  }
  matrix::unique_vxArray array(toArray(type).convert(value).asPointer<vxArray>());
  vxArray* result = walk(array.get());
  if (result == array.get()) return value;
  matrix::unique_vxArray owned(result);
  return fromArray(type).convert(COSValue(result));
}

COSValue SerializableConversion::forSave(const COSDataType& type, COSValue value) const {
  return through(type, value, &UDDConverter::convertUDDToHandles);
}

COSValue SerializableConversion::fromFile(const COSDataType& type, COSValue value) const {
  return through(type, value, &UDDConverter::replaceUDDHandles);
}

}  // namespace sgutils
