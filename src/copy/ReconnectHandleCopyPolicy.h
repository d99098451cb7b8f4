// Not installed. A property that refers to other objects: on the copy it
// refers to their copies in the same transaction. Objects outside the copy
// are dropped; with none left the copy keeps its constructed value.
#pragma once

#include "src/copy/ArrayValue.h"
#include "src/copy/PropertyCopyPolicy.h"
#include "vcos/COSInterfacePtr.h"

class COSClient;

namespace sgutils {
class CopyContextImpl;
}

namespace sgutils::copy {

class ReconnectHandleCopyPolicy final : public PropertyCopyPolicy {
 public:
  ReconnectHandleCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client,
                            CopyContextImpl* context);
  bool hasValue() override;
  void getValue(COSValue& out) override;

 private:
  void resolve();

  COSInterfacePtr source;
  COSDataTypePtr dataType;
  const COSClient* client;
  CopyContextImpl* context;
  bool resolved = false;
  OwnedValue value;
};

}  // namespace sgutils::copy
