// The child layout of the update block.
#include "sgutils/view/UpdateViewInfo.h"

namespace sgutils {

void UpdateViewInfo::setChildLayout(const COSInterfacePtr& child, const gui_objects::Rectangle2i& rect) {
  // try_emplace leaves an existing entry alone, so the first rectangle wins.
  childLayout_.try_emplace(COSInterfacePtr(child, COSWeakReference), rect);
}

bool UpdateViewInfo::hasChildPosition(const COSInterfacePtr& child) const {
  return childLayout_.find(child) != childLayout_.end();
}

gui_objects::Rectangle2i UpdateViewInfo::getChildPosition(const COSInterfacePtr& child) const {
  auto it = childLayout_.find(child);
  return it != childLayout_.end() ? it->second : gui_objects::Rectangle2i{};
}

}  // namespace sgutils
