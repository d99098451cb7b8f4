// A value a type conversion made: it belongs to its type, which destroys it
// when the guard goes unless it was handed on with release(). Move-only.
#pragma once

#include <utility>

#include "vcos/COSDataType.h"
#include "vcos/COSDataTypePtr.h"

class ConvertedValue {
 public:
  ConvertedValue(COSDataTypePtr type, COSValue value) noexcept : type_(std::move(type)), value_(value) {}
  ConvertedValue(ConvertedValue&& other) noexcept
      : type_(std::move(other.type_)), value_(std::exchange(other.value_, COSValue())) {}
  ConvertedValue& operator=(ConvertedValue&& other) noexcept {
    if (this != &other) {
      destroy();
      type_ = std::move(other.type_);
      value_ = std::exchange(other.value_, COSValue());
    }
    return *this;
  }
  ConvertedValue(const ConvertedValue&) = delete;
  ConvertedValue& operator=(const ConvertedValue&) = delete;
  ~ConvertedValue() { destroy(); }

  COSValue get() const noexcept { return value_; }
  // Hands the value on; the guard destroys nothing.
  COSValue release() noexcept { return std::exchange(value_, COSValue()); }

 private:
  void destroy() noexcept {
    if (type_ && !value_.isEmpty()) type_->destroy(value_);
    value_ = COSValue();
  }

  COSDataTypePtr type_;
  COSValue value_;
};
