// Not installed. A property value seen as an array and back, through the
// conversion between "any" and the property's data type (array types pass
// as they are).
#pragma once

#include "vcos/COSDataTypePtr.h"
#include "vcos/COSValue.h"
#include "vx/matrix.h"

namespace sgutils::copy {

// Whether values of `type` are arrays themselves (no conversion either way).
bool passesArrays(const COSDataTypePtr& type);
// Whether values of `type` can be seen as arrays.
bool hasArrayForm(const COSDataTypePtr& type);
// The value as a new array (null when the type has no array form).
matrix::unique_vxArray toArray(const COSDataTypePtr& type, COSValue value);
// A new value of `type` made from the array; empty when the type has no
// array form. Free it with destroyValue.
COSValue fromArray(const COSDataTypePtr& type, const vxArray* array);
void destroyValue(const COSDataTypePtr& type, COSValue value) noexcept;

// A value made by fromArray, freed at the end of its scope.
class OwnedValue {
 public:
  OwnedValue() = default;
  OwnedValue(COSDataTypePtr type, COSValue value) : type_(std::move(type)), value_(value), set_(true) {}
  OwnedValue(OwnedValue&& other) noexcept;
  OwnedValue& operator=(OwnedValue&& other) noexcept;
  ~OwnedValue() { reset(); }
  void reset() noexcept;
  bool has() const noexcept { return set_; }
  COSValue get() const noexcept { return value_; }

 private:
  COSDataTypePtr type_;
  COSValue value_;
  bool set_ = false;
};

}  // namespace sgutils::copy
