// The names of view properties changed since a view was last told: an
// ordered set in two lists. Priority names come out first, the latest one
// leading; the ordinary names follow in the order they were first marked.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "sgutils/SgutilsExport.h"

namespace vantel::graphics {

class SGUTILS_API DirtyPropertyTracker {
 public:
  // A name already present (in either list) stays where it is.
  void appendDirtyProperty(const std::string& name);
  void appendPriorityProperty(const std::string& name);

  bool hasDirtyProperty(const std::string& name) const { return names_.contains(name); }
  bool hasDirtyProperties() const noexcept { return !names_.empty(); }

  // Priority names from last to first, then the others from first to last.
  std::vector<std::string> getDirtyProperties() const;

  void clearDirtyProperties() noexcept;

 private:
  std::unordered_set<std::string> names_;
  std::vector<std::string> dirty_;
  std::vector<std::string> priority_;
};

}  // namespace vantel::graphics
