// Not installed. Collects the properties that connectCopyToTree repairs:
// references to other objects of the copied tree.
#pragma once

#include "src/copy/PropertyCopyVisitor.h"

namespace sgutils::copy {

class InsertCopyVisitor final : public PropertyCopyVisitor {
 public:
  using PropertyCopyVisitor::PropertyCopyVisitor;
  bool visitProperty(COSClass* definingClass, COSPropInfo* property) override;
};

}  // namespace sgutils::copy
