// Not installed. Copies a property's value as it stands on the source.
#pragma once

#include "src/copy/PropertyCopyPolicy.h"
#include "vcos/COSPropInfo.h"

namespace sgutils::copy {

class ShallowCopyPolicy final : public PropertyCopyPolicy {
 public:
  // The source is held by the transaction for the policy's life, so the
  // policy takes no reference of its own (it is made once per property).
  ShallowCopyPolicy(const COSPropInfo* property, COSInterface* source) noexcept
      : PropertyCopyPolicy(property), source(source) {}
  // A set value is borrowed by the property, so the value read is set as it
  // is and released with the policy. Inline: the copy runs this for every
  // property of every object.
  ~ShallowCopyPolicy() override {
    if (resolved) property->releaseValue(source, value);
  }
  bool hasValue() override { return true; }
  void getValue(COSValue& out) override {
    if (!resolved) {
      value = property->getValue(source);
      resolved = true;
    }
    out = value;
  }

 private:
  COSInterface* source;
  COSValue value;
  bool resolved = false;
};

}  // namespace sgutils::copy
