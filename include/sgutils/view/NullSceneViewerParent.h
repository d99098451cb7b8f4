// A scene viewer parent that has nothing to say: no view, positions and the
// pointer at the origin, and dirty children ignored. For tests and for
// sessions without a drawing layer. Its answers are public so that a test
// can ask them directly.
#pragma once

#include "sgutils/view/SceneViewerParent.h"

namespace sgutils::test {

class SGUTILS_API NullSceneViewerParent : public SceneViewerParent {
 public:
  ~NullSceneViewerParent() override;

  void childIsDirty(DirtyClass) override {}
  boost::shared_ptr<ViewObject> getViewObject() override { return {}; }
  graphics::datatype::ScreenPosition getChildReferencePosition() override { return {}; }
  graphics::datatype::ScreenPosition getChildPosition() override { return {}; }
  gui_objects::Point2i getSceneViewerParentCurrentPointInPixels() override { return {}; }
};

}  // namespace sgutils::test
