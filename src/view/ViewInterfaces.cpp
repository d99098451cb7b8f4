// The view objects and the scene viewer parent interface: their anchors and
// the look-up of the interface on a graphics object.
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/view/JavaViewObject.h"
#include "sgutils/view/NullSceneViewerParent.h"
#include "sgutils/view/SceneViewerParent.h"
#include "sgutils/view/ViewObject.h"

namespace sgutils {

ViewObject::~ViewObject() = default;

JavaViewObject::JavaViewObject(_jobject* object) : peer_(object) {}
JavaViewObject::JavaViewObject(graphics::datatype::JavaPeer peer) : peer_(std::move(peer)) {}
JavaViewObject::JavaViewObject(const JavaViewObject& other) = default;
JavaViewObject::~JavaViewObject() = default;

boost::shared_ptr<_jobject> JavaViewObject::getJavaPeer() const { return peer_.get(); }

SceneViewerParent::~SceneViewerParent() = default;

void SceneViewerParent::processSceneViewerEvent(COSInterfacePtr, COSInterfacePtr, UI_EventRecord const*,
                                                gui_objects::Point3d) {}

SceneViewerParent* SceneViewerParent::getSceneViewerParentInterface(COSInterfacePtr object) {
  return dynamic_cast<SceneViewerParent*>(SGHandle::fromObject(object.get()));
}

test::NullSceneViewerParent::~NullSceneViewerParent() = default;

}  // namespace sgutils
