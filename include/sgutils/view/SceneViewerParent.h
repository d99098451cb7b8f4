// The side of a graphics object that a scene viewer inside it speaks to: the
// viewer passes its input events up, and asks where it sits and which view to
// draw into. The queries are private: only the view layer, which derives from
// or befriends this interface, calls them.
#pragma once

#include <boost/shared_ptr.hpp>

#include "sgdatatypes/ScreenPosition.h"
#include "sgutils/SgutilsExport.h"
#include "sgutils/view/DirtyClass.h"
#include "sgutils/view/Point2i.h"
#include "sgutils/view/Point3d.h"
#include "sgutils/view/ViewObject.h"
#include "vcos/COSInterfacePtr.h"

// An input event of the windowing layer; only passed through here.
struct UI_EventRecord;

namespace sgutils {

class SGUTILS_API SceneViewerParent {
 public:
  virtual ~SceneViewerParent();

  // An input event at `point` that the viewer `viewer` saw on `target`. The
  // base ignores it.
  virtual void processSceneViewerEvent(COSInterfacePtr viewer, COSInterfacePtr target, UI_EventRecord const* event,
                                       gui_objects::Point3d point);

  // The object's Graphics data block as this interface; null for a null or
  // destroyed object, one that is no graphics object, or one whose block is
  // no scene viewer parent.
  static SceneViewerParent* getSceneViewerParentInterface(COSInterfacePtr object);

 private:
  virtual void childIsDirty(DirtyClass what) = 0;
  virtual boost::shared_ptr<ViewObject> getViewObject() = 0;
  virtual graphics::datatype::ScreenPosition getChildReferencePosition() = 0;
  virtual graphics::datatype::ScreenPosition getChildPosition() = 0;
  virtual gui_objects::Point2i getSceneViewerParentCurrentPointInPixels() = 0;
};

}  // namespace sgutils
