// Not installed. A property that names child objects of its own: each is
// copied through its class's copyElement and the copies are the value. The
// copies are no tasks of the transaction.
#pragma once

#include "src/copy/ArrayValue.h"
#include "src/copy/PropertyCopyPolicy.h"
#include "vcos/COSInterfacePtr.h"

class COSClient;

namespace sgutils::copy {

class NamedChildCopyPolicy final : public PropertyCopyPolicy {
 public:
  NamedChildCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client);
  bool hasValue() override;
  void getValue(COSValue& out) override;

 private:
  void resolve();

  COSInterfacePtr source;
  COSDataTypePtr dataType;
  const COSClient* client;
  OwnedValue value;
  bool resolved = false;
};

}  // namespace sgutils::copy
