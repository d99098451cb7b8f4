#include "sgutils/view/DirtyPropertyTracker.h"

namespace vantel::graphics {

void DirtyPropertyTracker::appendDirtyProperty(const std::string& name) {
  if (names_.insert(name).second) dirty_.push_back(name);
}

void DirtyPropertyTracker::appendPriorityProperty(const std::string& name) {
  if (names_.insert(name).second) priority_.push_back(name);
}

std::vector<std::string> DirtyPropertyTracker::getDirtyProperties() const {
  std::vector<std::string> out;
  out.reserve(priority_.size() + dirty_.size());
  out.insert(out.end(), priority_.rbegin(), priority_.rend());
  out.insert(out.end(), dirty_.begin(), dirty_.end());
  return out;
}

void DirtyPropertyTracker::clearDirtyProperties() noexcept {
  names_.clear();
  dirty_.clear();
  priority_.clear();
}

}  // namespace vantel::graphics
