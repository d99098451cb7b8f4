// Not installed. A property that refers to other objects: on the copy it
// refers to their copies in the same transaction. Objects outside the copy
// are dropped; with none left the copy keeps its constructed value.
#pragma once

#include "src/copy/ArrayCopyPolicy.h"

namespace sgutils {
class CopyContextImpl;
}

namespace sgutils::copy {

class ReconnectHandleCopyPolicy final : public ArrayCopyPolicy {
 public:
  ReconnectHandleCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client,
                            CopyContextImpl* context)
      : ArrayCopyPolicy(property, std::move(source), client), context(context) {}

 private:
  matrix::unique_vxArray copyOf(const vxArray* sourceValue) override;

  CopyContextImpl* context;
};

}  // namespace sgutils::copy
