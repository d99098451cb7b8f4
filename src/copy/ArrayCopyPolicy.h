// Not installed. A policy whose value for the copy is made from the
// source's value seen as an array, once, at the first question; types with
// no array form, and a null answer of copyOf, leave the copy's constructed
// value.
#pragma once

#include "src/copy/ArrayValue.h"
#include "src/copy/PropertyCopyPolicy.h"
#include "vcos/COSInterfacePtr.h"

class COSClient;

namespace sgutils::copy {

class ArrayCopyPolicy : public PropertyCopyPolicy {
 public:
  bool hasValue() final;
  void getValue(COSValue& out) final;

 protected:
  ArrayCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client);
  // The copy's value made from the source's; null for none.
  virtual matrix::unique_vxArray copyOf(const vxArray* sourceValue) = 0;

  COSInterfacePtr source;
  COSDataTypePtr dataType;
  const COSClient* client;

 private:
  void resolve();

  OwnedValue value;
  bool resolved = false;
};

}  // namespace sgutils::copy
