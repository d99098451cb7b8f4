// The post-set forwarder of the property handler block: like Mixin's, it
// hands the call on to the object's Graphics block when there is one.
#include <utility>

#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/lifecycle/SGPropHandler.h"

void SGPropHandler::doPostSet(COSInterfacePtr object, COSPropInfo* property, bool limitsDirty, bool objectDirty) {
  if (SGHandle* handle = toSGHandle(object)) handle->doPostSet(std::move(object), property, limitsDirty, objectDirty);
}
