// The objects marked dirty since the last drawnow, and what drawnow checks.
#include "sgclasses/Drawnow.h"

#include <vector>

#include "foundation/core/except/WarningChannel.h"
#include "foundation/i18n/Message.h"
#include "sgclasses/ViewUpdates.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"

namespace sgclasses {

namespace {
// Weak references: a dirty object that is deleted meanwhile is passed over.
std::vector<COSInterfacePtr>& dirtyObjects() {
  static std::vector<COSInterfacePtr> objects;
  return objects;
}
}  // namespace

void forgetDeletedDirtyObjects() {
  std::vector<COSInterfacePtr>& queue = dirtyObjects();
  std::erase_if(queue, [](const COSInterfacePtr& o) { return o->isDestroyed(); });
  // After a mass deletion the storage of the peak would stay with the
  // process (16 bytes per object once dirty); a quarter full gives it back.
  if (queue.capacity() > 4096 && queue.size() < queue.capacity() / 4) queue.shrink_to_fit();
}

// A weak reference keeps the memory of a deleted object, so before the queue
// grows its storage it lets go of the deleted ones: without a drawnow the
// queue stays within twice the live dirty objects.
void markDirty(COSInterface* object) {
  std::vector<COSInterfacePtr>& queue = dirtyObjects();
  if (queue.size() == queue.capacity()) forgetDeletedDirtyObjects();
  queue.emplace_back(object, COSWeakReference);
}

std::size_t drawnow() {
  std::vector<COSInterfacePtr> taken;
  taken.swap(dirtyObjects());
  for (const COSInterfacePtr& object : taken) {
    if (object->isDestroyed() || object->isBeingDestroyed()) continue;
    auto* node = sgutils::blockOf<GraphicsNode>(object.get(), GraphicsNode::classID());
    if (!node) continue;
    node->takeDirty();
    if (graphics::mixin::ViewPropertiesManager* manager = node->viewProperties())
      detail::tellViews(object.get(), *manager);
    if (!object->getClass()->isSubclassOf(Line::classID())) continue;
    Line* line = static_cast<Line*>(node);
    if (line->isDataValid()) {
      line->warnedInvalid = false;
    } else if (!line->warnedInvalid) {
      line->warnedInvalid = true;
      foundation::core::except::WarningChannel::instance().issue(
          i18n::Message("VANTEL:sgclasses:LineDataLengths"));
    }
  }
  return taken.size();
}

}  // namespace sgclasses
