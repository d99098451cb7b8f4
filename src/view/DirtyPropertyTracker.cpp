#include "sgutils/view/DirtyPropertyTracker.h"

namespace vantel::graphics {

bool DirtyPropertyTracker::addName(std::string_view name) {
  if (names_.contains(name)) return false;
  names_.emplace(name);
  return true;
}

void DirtyPropertyTracker::appendDirtyProperty(std::string_view name) {
  if (addName(name)) dirty_.emplace_back(name);
}

void DirtyPropertyTracker::appendPriorityProperty(std::string_view name) {
  if (addName(name)) priority_.emplace_back(name);
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
