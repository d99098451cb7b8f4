// Not installed. As CopyElementVisitor, and also callback properties and
// ApplicationData that a copy otherwise leaves alone: copied by value.
#pragma once

#include "src/copy/CopyElementVisitor.h"

namespace sgutils::copy {

class CopyElementWithCallbacksVisitor final : public CopyElementVisitor {
 public:
  using CopyElementVisitor::CopyElementVisitor;
  bool visitProperty(COSClass* definingClass, COSPropInfo* property) override;
};

}  // namespace sgutils::copy
