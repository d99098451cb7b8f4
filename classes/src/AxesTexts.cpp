#include "sgclasses/AxesTexts.h"

#include "sgutils/objects/Axes.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSInterface.h"

namespace sgclasses {

std::array<COSInterfacePtr, 3> axesOwnTexts(COSInterface* axes) {
  Axes* block = axes ? sgutils::blockOf<Axes>(axes, Axes::classID()) : nullptr;
  if (!block) return {};
  COSInterfacePtr title = block->title();
  if (title && (title->isDestroyed() || title->isBeingDestroyed())) title.reset();
  return {title, block->label(axes, 0, false), block->label(axes, 1, false)};
}

}  // namespace sgclasses
