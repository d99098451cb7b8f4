// Not installed. What a copy does with the properties of one class, sorted
// once per class by the visitors and kept for the process, so that copying
// an object walks a short list and looks no name up.
#pragma once

#include <vector>

#include "src/copy/PropertyCopyVisitor.h"

class COSClass;

namespace sgutils::copy {

struct ClassCopyPlan {
  std::vector<PropertyCopyEntry> element;               // copyElement
  std::vector<PropertyCopyEntry> elementWithCallbacks;  // copyElement, callbacks asked for
  std::vector<PropertyCopyEntry> connect;               // connectCopyToTree

  // The plan of the object's class; `object` answers the child-property test.
  static const ClassCopyPlan& of(const COSInterface* object);
};

}  // namespace sgutils::copy
