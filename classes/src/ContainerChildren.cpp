// The children of a concrete container: hidden ones too while the root's
// ShowHiddenHandles is on.
#include "sgclasses/ContainerChildren.h"

namespace sgclasses {

void ContainerChildren::collectChildren(sgutils::ChildList& out) {
  collectChildrenWidenedByRoot(out);
}

}  // namespace sgclasses
