#include "sgutils/view/DirtyPropertyTracker.h"

namespace vantel::graphics {

bool DirtyPropertyTracker::inLists(std::string_view name) const {
  for (const std::string& n : dirty_)
    if (n == name) return true;
  for (const std::string& n : priority_)
    if (n == name) return true;
  return false;
}

bool DirtyPropertyTracker::hasDirtyProperty(std::string_view name) const {
  return names_.empty() ? inLists(name) : names_.contains(name);
}

bool DirtyPropertyTracker::addName(std::string_view name) {
  if (hasDirtyProperty(name)) return false;
  const std::size_t held = dirty_.size() + priority_.size();
  if (!names_.empty()) {
    names_.emplace(name);
  } else if (held >= kListedNames) {
    try {
      names_.reserve(2 * (held + 1));
      for (const std::string& n : dirty_) names_.emplace(n);
      for (const std::string& n : priority_) names_.emplace(n);
      names_.emplace(name);
    } catch (...) {
      names_.clear();  // a partial set would hide listed names
      throw;
    }
  }
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
