// The hand-written half of NodeParent: the owner link of the object.
#include "sgutils/objects/NodeParent.gen.h"

#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"

namespace graphics::mixin {

COSInterfacePtr NodeParent::getNodeParentInternal() const {
  COSInterfacePtr owner;
  if (COSInterface* self = getCOSObject()) self->getOwner(owner);
  return owner;
}

COSValue NodeParent::getNodeParentImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  const COSInterfacePtr owner = getNodeParentInternal();
  return COSValue(owner ? omCreateVCOSScalar(owner) : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
}

// The tree is changed through Parent, never here.
void NodeParent::setNodeParentImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue) {}

}  // namespace graphics::mixin
