// Not installed. A property that names child objects of its own: each is
// copied through its class's copyElement and the copies are the value. The
// copies are no tasks of the transaction.
#pragma once

#include "src/copy/ArrayCopyPolicy.h"

namespace sgutils::copy {

class NamedChildCopyPolicy final : public ArrayCopyPolicy {
 public:
  NamedChildCopyPolicy(const COSPropInfo* property, COSInterfacePtr source, const COSClient* client)
      : ArrayCopyPolicy(property, std::move(source), client) {}

 private:
  matrix::unique_vxArray copyOf(const vxArray* sourceValue) override;
};

}  // namespace sgutils::copy
