// The names of view properties changed since a view was last told: an
// ordered set in two lists. Priority names come out first, the latest one
// leading; the ordinary names follow in the order they were first marked.
// Names are kept as interned ids, so a mark copies no text.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInternedBase.h"

namespace vantel::graphics {

class SGUTILS_API DirtyPropertyTracker {
 public:
  // A name already present (in either list) stays where it is.
  void appendDirtyProperty(COSID name);
  void appendPriorityProperty(COSID name);
  // The same for a name given as text: it is interned first.
  void appendDirtyProperty(std::string_view name) { appendDirtyProperty(COSID(name)); }
  void appendPriorityProperty(std::string_view name) { appendPriorityProperty(COSID(name)); }

  bool hasDirtyProperty(COSID name) const;
  // Compares the texts: a name never marked is not interned by asking.
  bool hasDirtyProperty(std::string_view name) const;
  bool hasDirtyProperties() const noexcept { return !dirty_.empty() || !priority_.empty(); }

  // Priority names from last to first, then the others from first to last.
  std::vector<std::string> getDirtyProperties() const;

  void clearDirtyProperties() noexcept;

 private:
  bool addName(COSID name);
  bool inLists(COSID name) const;

  // Most trackers hold a name or two (a new object starts with one): up to
  // kListedNames they are found in the lists, and only a longer set builds
  // the hash set, which then holds every name.
  static constexpr std::size_t kListedNames = 8;
  std::unordered_set<COSID> names_;
  std::vector<COSID> dirty_;
  std::vector<COSID> priority_;
};

}  // namespace vantel::graphics
