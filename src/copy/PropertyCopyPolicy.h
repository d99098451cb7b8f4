// Not installed. The decision for one property of one object in a copy:
// whether it has a value for the copy, and which. Policies work lazily: the
// value is worked out at the first question and kept.
#pragma once

#include "vcos/COSValue.h"

class COSPropInfo;

namespace sgutils::copy {

class PropertyCopyPolicy {
 public:
  explicit PropertyCopyPolicy(const COSPropInfo* property) noexcept : property(property) {}
  PropertyCopyPolicy(const PropertyCopyPolicy&) = delete;
  PropertyCopyPolicy& operator=(const PropertyCopyPolicy&) = delete;
  virtual bool hasValue() = 0;
  // The value to set on the copy; borrowed from the policy.
  virtual void getValue(COSValue& out) = 0;
  virtual ~PropertyCopyPolicy() = default;

  const COSPropInfo* property;
};

}  // namespace sgutils::copy
