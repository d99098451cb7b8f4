// The names of view properties changed since a view was last told: an
// ordered set in two lists. Priority names come out first, the latest one
// leading; the ordinary names follow in the order they were first marked.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "sgutils/SgutilsExport.h"

namespace vantel::graphics {

class SGUTILS_API DirtyPropertyTracker {
 public:
  // A name already present (in either list) stays where it is; only a new
  // name is copied, so marking the same property again allocates nothing.
  void appendDirtyProperty(std::string_view name);
  void appendPriorityProperty(std::string_view name);

  bool hasDirtyProperty(std::string_view name) const;
  bool hasDirtyProperties() const noexcept { return !dirty_.empty() || !priority_.empty(); }

  // Priority names from last to first, then the others from first to last.
  std::vector<std::string> getDirtyProperties() const;

  void clearDirtyProperties() noexcept;

 private:
  // Looked up by string_view without making a string.
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view s) const noexcept { return std::hash<std::string_view>{}(s); }
  };
  bool addName(std::string_view name);
  bool inLists(std::string_view name) const;

  // Most trackers hold a name or two (a new object starts with one): up to
  // kListedNames they are found in the lists, and only a longer set builds
  // the hash set, which then holds every name.
  static constexpr std::size_t kListedNames = 8;
  std::unordered_set<std::string, NameHash, std::equal_to<>> names_;
  std::vector<std::string> dirty_;
  std::vector<std::string> priority_;
};

}  // namespace vantel::graphics
