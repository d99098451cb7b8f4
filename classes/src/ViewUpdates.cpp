#include "sgclasses/ViewUpdates.h"

#include <algorithm>

#include "sgutils/objects/GraphicsNode.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/view/ViewPropertiesManager.h"

namespace sgclasses {

namespace {
std::vector<ViewUpdateListener*>& views() {
  static std::vector<ViewUpdateListener*> list;
  return list;
}
// The object and every ancestor are visible (a walk up: the cost follows the
// depth, not the tree).
bool inVisibleHierarchy(COSInterface* object) {
  for (COSInterface* up = object; up; up = up->getOwnerObject()) {
    auto* node = sgutils::blockOf<GraphicsNode>(up, GraphicsNode::classID());
    if (node && !node->getVisible()) return false;
  }
  return true;
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
  return node ? node->viewProperties().getDirtyPropertyStrings() : std::vector<std::string>();
}

namespace detail {
void tellViews(COSInterface* object, graphics::mixin::ViewPropertiesManager& manager) {
  if (!manager.hasDirtyProperties()) return;
  if (!views().empty()) {
    const std::vector<std::string> names = manager.getDirtyPropertyStrings();
    sgutils::UpdateViewInfo info;
    info.setIsInVisibleHierarchy(inVisibleHierarchy(object));
    // A copy: a view may unregister while it is told.
    const std::vector<ViewUpdateListener*> listeners = views();
    for (ViewUpdateListener* view : listeners) view->viewPropertiesChanged(object, names, info);
  }
  manager.markClean();
}
}  // namespace detail

}  // namespace sgclasses
