// The hand-written half of Mixin: both doPostSet forms hand the call on to
// the object's Graphics block, where a concrete class marks itself dirty.
#include "sgutils/objects/Mixin.gen.h"

#include "sgutils/SGHandle.h"

namespace graphics::mixin {

void Mixin::doPostSet(COSInterfacePtr object, COSPropInfo* property, DirtyFlags flags) {
  // Null for an object outside "vantel.graphics.Graphics".
  if (SGHandle* handle = toSGHandle(object)) handle->doPostSet(object, property, flags);
}

void Mixin::doPostSet(COSInterfacePtr object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  if (SGHandle* handle = toSGHandle(object)) handle->doPostSet(object, property, limitsDirty, objectDirty);
}

}  // namespace graphics::mixin
