// The factory default of a property kind whose value maker is a static of its
// concrete class: made on first request, kept for the life of the property
// info, and freed by the data type that made it.
#pragma once

#include "vcos/COSDataType.h"
#include "vcos/COSValue.h"

namespace sgutils {

class LazyFactoryValue {
 public:
  LazyFactoryValue() = default;
  LazyFactoryValue(const LazyFactoryValue&) = delete;
  LazyFactoryValue& operator=(const LazyFactoryValue&) = delete;
  ~LazyFactoryValue() {
    if (type_) type_->destroy(value_);
  }

  // `make(type)` gives a new owned word; it runs once, and not at all for a
  // property without a type.
  template <class Make>
  COSValue get(const COSDataType* type, Make make) const {
    if (!computed_) {
      computed_ = true;
      if (type) {
        value_ = make(*type);
        type_ = type;
      }
    }
    return value_;
  }

 private:
  mutable COSValue value_;
  mutable const COSDataType* type_ = nullptr;
  mutable bool computed_ = false;
};

}  // namespace sgutils
