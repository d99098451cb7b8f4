// The post-set forwarder of the property handler block: like Mixin's, it
// hands the call on to the object's Graphics block when there is one.
#include <utility>

#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/lifecycle/SGPropHandler.h"

void SGPropHandler::doPostSet(COSInterface* object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  if (SGHandle* handle = SGHandle::fromObject(object)) handle->doPostSet(object, property, limitsDirty, objectDirty);
}
