// Not installed. Collects what copyElement copies: values, and the child
// objects that a property names.
#pragma once

#include "src/copy/PropertyCopyVisitor.h"

namespace sgutils::copy {

class CopyElementVisitor : public PropertyCopyVisitor {
 public:
  using PropertyCopyVisitor::PropertyCopyVisitor;
  bool visitProperty(COSClass* definingClass, COSPropInfo* property) override;
};

}  // namespace sgutils::copy
