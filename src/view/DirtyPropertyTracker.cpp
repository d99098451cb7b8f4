#include "sgutils/view/DirtyPropertyTracker.h"

namespace vantel::graphics {

bool DirtyPropertyTracker::inLists(COSID name) const {
  for (COSID n : dirty_)
    if (n == name) return true;
  for (COSID n : priority_)
    if (n == name) return true;
  return false;
}

bool DirtyPropertyTracker::hasDirtyProperty(COSID name) const {
  return names_.empty() ? inLists(name) : names_.contains(name);
}

bool DirtyPropertyTracker::hasDirtyProperty(std::string_view name) const {
  for (COSID n : dirty_)
    if (n.str() == name) return true;
  for (COSID n : priority_)
    if (n.str() == name) return true;
  return false;
}

bool DirtyPropertyTracker::addName(COSID name) {
  if (hasDirtyProperty(name)) return false;
  const std::size_t held = dirty_.size() + priority_.size();
  if (!names_.empty()) {
    names_.insert(name);
  } else if (held >= kListedNames) {
    try {
      names_.reserve(2 * (held + 1));
      names_.insert(dirty_.begin(), dirty_.end());
      names_.insert(priority_.begin(), priority_.end());
      names_.insert(name);
    } catch (...) {
      names_.clear();  // a partial set would hide listed names
      throw;
    }
  }
  return true;
}

void DirtyPropertyTracker::appendDirtyProperty(COSID name) {
  if (!addName(name)) return;
  // Room for the few names an object usually gathers, taken at once.
  if (dirty_.capacity() == 0) dirty_.reserve(4);
  dirty_.push_back(name);
}

void DirtyPropertyTracker::appendPriorityProperty(COSID name) {
  if (addName(name)) priority_.push_back(name);
}

std::vector<std::string> DirtyPropertyTracker::getDirtyProperties() const {
  std::vector<std::string> out;
  out.reserve(priority_.size() + dirty_.size());
  for (auto it = priority_.rbegin(); it != priority_.rend(); ++it) out.push_back(it->str());
  for (COSID n : dirty_) out.push_back(n.str());
  return out;
}

void DirtyPropertyTracker::clearDirtyProperties() noexcept {
  names_.clear();
  dirty_.clear();
  priority_.clear();
}

}  // namespace vantel::graphics
