// Two look-ups on graphics objects: the figure builder's mark, and the
// user-interface side of an object's Graphics block.
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/services/FormbenchFigureUtils.h"
#include "sgutils/services/UIChildInterface.h"
#include "vcos/COSInterface.h"
#include "vcos/DynamicProperties.h"

namespace sgutils {

bool FormbenchFigureUtils::hasFormbenchFigureProperty(const COSInterfacePtr& object) {
  if (!object) return false;
  if (!vcos::hasDynamicProperties(object.get())) {  // the common case: no name look-up
    object->checkValid();
    return false;
  }
  static const COSID name("FormbenchFigure");
  COSInterfacePtr found;
  object->findDynamicProperty(found, name);
  return static_cast<bool>(found);
}

UIChildInterface::~UIChildInterface() = default;

UIChildInterface* UIChildInterface::getUIChildInterface(const COSInterfacePtr& object) {
  return dynamic_cast<UIChildInterface*>(SGHandle::fromObject(object.get()));
}

}  // namespace sgutils
