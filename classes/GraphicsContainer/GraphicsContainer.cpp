// The hand-written half of GraphicsContainer: Children through its manager.
#include "sgutils/objects/GraphicsContainer.gen.h"

namespace sgclasses {

COSValue GraphicsContainer::getChildrenImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(children_.getChildList());
}

void GraphicsContainer::setChildrenImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  children_.setChildList(value.asPointer<const vxArray>());
}

}  // namespace sgclasses
