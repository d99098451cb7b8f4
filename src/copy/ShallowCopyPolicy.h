// Not installed. Copies a property's value as it stands on the source.
#pragma once

#include "src/copy/PropertyCopyPolicy.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils::copy {

class ShallowCopyPolicy final : public PropertyCopyPolicy {
 public:
  ShallowCopyPolicy(const COSPropInfo* property, COSInterfacePtr source) noexcept
      : PropertyCopyPolicy(property), source(std::move(source)) {}
  ~ShallowCopyPolicy() override;
  bool hasValue() override { return true; }
  void getValue(COSValue& out) override;

 private:
  COSInterfacePtr source;
  COSValue value;
  bool resolved = false;
};

}  // namespace sgutils::copy
