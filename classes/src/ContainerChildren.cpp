// The children of a concrete container: hidden ones too while the root's
// ShowHiddenHandles is on.
#include "sgclasses/ContainerChildren.h"

#include "sgutils/tree/DefaultChildStrategy.h"
#include "sgutils/tree/RootInstance.h"
#include "sgutils/tree/ShowHiddenHandlesInternal.h"

namespace sgclasses {

void ContainerChildren::collectChildren(sgutils::ChildList& out) {
  const bool hasRoot = sgutils::RootInstance::getRootInstance(sgutils::NullTolerance::Tolerate) != nullptr;
  if (hasRoot && sgutils::DefaultChildStrategy::isShowHiddenHandlesOn()) {
    sgutils::ShowHiddenHandlesInternal::ShowHiddenHandlesInternalScopeGuard showAll;
    collectChildrenDefault(out);
    return;
  }
  collectChildrenDefault(out);
}

}  // namespace sgclasses
