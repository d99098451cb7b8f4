// The children of a concrete container: hidden ones too while the root's
// ShowHiddenHandles is on.
#include "sgclasses/ContainerChildren.h"

#include "sgutils/objects/GraphicsContainer.gen.h"
#include "sgutils/propinfos/BlockOf.h"

namespace sgclasses {

void ContainerChildren::collectChildren(sgutils::ChildList& out) {
  collectChildrenWidenedByRoot(out);
}

sgutils::ChildListing ContainerChildren::listingOf(COSInterface* instance) {
  if (sgutils::blockOf<GraphicsContainer>(instance, GraphicsContainer::classID()))
    return sgutils::ChildListing::VisibleWidenedByRoot;
  // The other concrete classes have no Children.
  if (sgutils::blockOf<GraphicsNode>(instance, GraphicsNode::classID())) return sgutils::ChildListing::None;
  return sgutils::ChildListing::Built;
}

}  // namespace sgclasses
