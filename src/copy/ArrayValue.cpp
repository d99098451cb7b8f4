#include "src/copy/ArrayValue.h"

#include <utility>

#include "vcos/COSDataType.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vxCreate.h"

namespace sgutils::copy {

namespace {
bool isArrayType(const COSDataTypePtr& type) { return !type || type->isVANTELArrayType(); }
}  // namespace

bool passesArrays(const COSDataTypePtr& type) { return isArrayType(type); }

bool hasArrayForm(const COSDataTypePtr& type) {
  return isArrayType(type) || (COSTypeRepository::getArrayConversion(*type, true) &&
                               COSTypeRepository::getArrayConversion(*type, false));
}

matrix::unique_vxArray toArray(const COSDataTypePtr& type, COSValue value) {
  if (isArrayType(type)) {
    const auto* array = value.asPointer<const vxArray>();
    return matrix::unique_vxArray(array ? vxCreateSharedDataCopy(array) : nullptr);
  }
  const COSTypeConversion* conversion = COSTypeRepository::getArrayConversion(*type, true);
  if (!conversion) return nullptr;
  return matrix::unique_vxArray(conversion->convert(value).asPointer<vxArray>());
}

COSValue fromArray(const COSDataTypePtr& type, const vxArray* array) {
  if (isArrayType(type)) return COSValue(vxCreateSharedDataCopy(array));
  const COSTypeConversion* conversion = COSTypeRepository::getArrayConversion(*type, false);
  if (!conversion) return COSValue();
  return conversion->convert(COSValue(array));
}

void destroyValue(const COSDataTypePtr& type, COSValue value) noexcept {
  if (isArrayType(type)) {
    if (auto* array = value.asPointer<vxArray>()) matrix::destroyArray(array);
    return;
  }
  type->destroy(value);
}

OwnedValue::OwnedValue(OwnedValue&& other) noexcept
    : type_(std::move(other.type_)), value_(other.value_), set_(std::exchange(other.set_, false)) {}

OwnedValue& OwnedValue::operator=(OwnedValue&& other) noexcept {
  if (this != &other) {
    reset();
    type_ = std::move(other.type_);
    value_ = other.value_;
    set_ = std::exchange(other.set_, false);
  }
  return *this;
}

void OwnedValue::reset() noexcept {
  if (set_) destroyValue(type_, value_);
  set_ = false;
}

}  // namespace sgutils::copy
