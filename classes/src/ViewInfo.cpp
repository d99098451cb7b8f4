#include "sgclasses/ViewInfo.h"

#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSInterface.h"

namespace sgclasses {

sgutils::UpdateViewInfo updateViewInfoFor(COSInterface* object) {
  sgutils::UpdateViewInfo info;
  info.setScreenResolution(kScreenPixelsPerInch);
  info.setBaseScreenResolution(kScreenPixelsPerInch);
  // One walk up: the nearest axes strictly above the object, the figure at
  // or above it, and whether everything on the way is visible.
  const Axes* axes = nullptr;
  const Figure* figure = nullptr;
  COSInterface* figureObject = nullptr;
  bool visible = true;
  for (COSInterface* up = object; up; up = up->getOwnerObject()) {
    if (auto* node = sgutils::blockOf<GraphicsNode>(up, GraphicsNode::classID()); node && !node->getVisible())
      visible = false;
    if (!figure) {
      if (auto* f = sgutils::blockOf<Figure>(up, Figure::classID())) {
        figure = f;
        figureObject = up;
      } else if (!axes && up != object) {
        axes = sgutils::blockOf<Axes>(up, Axes::classID());
      }
    }
  }
  info.setIsInVisibleHierarchy(visible);
  COSInterface* rootObject = figureObject ? figureObject->getOwnerObject() : nullptr;
  info.setIsInDrawnowSyncableHierarchy(rootObject && sgutils::blockOf<Root>(rootObject, Root::classID()));
  if (!figure) return info;

  const graphics::datatype::Position fp = figure->getPosition();
  if (figureObject == object) {
    info.setRefFrame({fp.left(), fp.bottom(), fp.width(), fp.height()});
  } else if (axes) {
    const graphics::datatype::Position ap = axes->getPosition();
    info.setRefFrame({ap.left() * fp.width(), ap.bottom() * fp.height(), ap.width() * fp.width(),
                      ap.height() * fp.height()});
  } else {
    info.setRefFrame({0, 0, fp.width(), fp.height()});
  }
  const graphics::datatype::RGBAColor background = axes ? axes->getColor() : graphics::datatype::RGBAColor::none();
  info.setColor(background.isNone() ? figure->getColor() : background);
  return info;
}

}  // namespace sgclasses
