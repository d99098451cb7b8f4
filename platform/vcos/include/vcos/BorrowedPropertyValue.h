// A property value that its owner lent out, given back when the guard goes:
// through the object as the client that read it (the access-checked path),
// or through the property's own releaseValue (the direct path). Move-only.
#pragma once

#include <utility>

#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"

class BorrowedPropertyValue {
 public:
  // A value read with object->getPropertyValue(client, property).
  static BorrowedPropertyValue read(COSInterface* object, const COSClient* client, const COSPropInfo* property) {
    return BorrowedPropertyValue(object, client, property, object->getPropertyValue(client, property));
  }
  // A value read with property->getValue(object).
  static BorrowedPropertyValue readDirect(COSInterface* object, const COSPropInfo* property) {
    return BorrowedPropertyValue(object, nullptr, property, property->getValue(object));
  }

  BorrowedPropertyValue(BorrowedPropertyValue&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)),
        client_(other.client_),
        property_(other.property_),
        value_(other.value_) {}
  BorrowedPropertyValue& operator=(BorrowedPropertyValue&& other) noexcept {
    if (this != &other) {
      giveBack();
      object_ = std::exchange(other.object_, nullptr);
      client_ = other.client_;
      property_ = other.property_;
      value_ = other.value_;
    }
    return *this;
  }
  BorrowedPropertyValue(const BorrowedPropertyValue&) = delete;
  BorrowedPropertyValue& operator=(const BorrowedPropertyValue&) = delete;
  ~BorrowedPropertyValue() { giveBack(); }

  COSValue get() const noexcept { return value_; }

 private:
  // A null client means the direct path.
  BorrowedPropertyValue(COSInterface* object, const COSClient* client, const COSPropInfo* property,
                        COSValue value) noexcept
      : object_(object), client_(client), property_(property), value_(value) {}

  void giveBack() noexcept {
    if (!object_) return;
    if (client_)
      object_->releasePropertyValue(client_, property_, value_);
    else
      property_->releaseValue(object_, value_);
    object_ = nullptr;
  }

  COSInterface* object_;
  const COSClient* client_;
  const COSPropInfo* property_;
  COSValue value_;
};
