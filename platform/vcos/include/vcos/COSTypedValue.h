// A value together with its type, so that it can be copied and freed
// without knowing the type at the call site. Owns its value.
#pragma once

#include <utility>

#include "vcos/COSDataType.h"
#include "vcos/COSDataTypePtr.h"

class COSTypedValue {
 public:
  COSTypedValue() = default;
  // Takes ownership of `value`.
  COSTypedValue(COSValue value, COSDataTypePtr type) : value_(value), type_(std::move(type)) {}
  COSTypedValue(const COSTypedValue& o) : value_(o.type_ ? o.type_->copy(o.value_) : o.value_), type_(o.type_) {}
  COSTypedValue(COSTypedValue&& o) noexcept : value_(std::exchange(o.value_, COSValue())), type_(std::move(o.type_)) {}
  COSTypedValue& operator=(COSTypedValue o) noexcept {
    std::swap(value_, o.value_);
    std::swap(type_, o.type_);
    return *this;
  }
  ~COSTypedValue() {
    if (type_) type_->destroy(value_);
  }

  COSValue getValue() const noexcept { return value_; }
  const COSDataTypePtr& getType() const noexcept { return type_; }
  // Gives up ownership of the value.
  COSValue release() noexcept { return std::exchange(value_, COSValue()); }

 private:
  COSValue value_;
  COSDataTypePtr type_;
};
