#include "sgclasses/ViewUpdates.h"

#include <algorithm>

#include "sgclasses/ViewInfo.h"
#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/objects/ViewPropertiesManager.gen.h"

namespace sgclasses {

namespace {
std::vector<ViewUpdateListener*>& views() {
  static std::vector<ViewUpdateListener*> list;
  return list;
}
}  // namespace

ViewUpdateListener::~ViewUpdateListener() = default;

ScopedViewRegistration::ScopedViewRegistration(ViewUpdateListener& view) : view_(&view) {
  views().push_back(view_);
}

ScopedViewRegistration::~ScopedViewRegistration() { std::erase(views(), view_); }

std::vector<std::string> pendingViewProperties(COSInterface* object) {
  if (!object) return {};
  auto* node = sgutils::blockOf<GraphicsNode>(object, GraphicsNode::classID());
  return node && node->viewProperties() ? node->viewProperties()->getDirtyPropertyStrings()
                                        : std::vector<std::string>();
}

namespace detail {
void tellViews(COSInterface* object, graphics::mixin::ViewPropertiesManager& manager) {
  if (!manager.hasDirtyProperties()) return;
  if (!views().empty()) {
    const std::vector<std::string> names = manager.getDirtyPropertyStrings();
    const sgutils::UpdateViewInfo info = updateViewInfoFor(object);
    // A copy: a view may unregister while it is told.
    const std::vector<ViewUpdateListener*> listeners = views();
    for (ViewUpdateListener* view : listeners) view->viewPropertiesChanged(object, names, info);
  }
  manager.markClean();
}
}  // namespace detail

}  // namespace sgclasses
