// How one kind of component keeps the names of its changed view
// properties. The base passes everything to its tracker; the kinds differ in
// the names they start with and in how a name is written down.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "sgutils/view/DirtyPropertyTracker.h"

namespace sgutils {

class SGUTILS_API ViewPropertiesStrategy {
 public:
  virtual ~ViewPropertiesStrategy();
  // Marks a property by its interned name.
  virtual void markDirty(COSID name);
  // The same for a name given as text, interned first.
  void markDirty(std::string_view name) { markDirty(COSID(name)); }
  virtual void markClean();
  virtual std::vector<std::string> getDirtyProperties() const;
  virtual bool hasDirtyProperties() const;

 protected:
  vantel::graphics::DirtyPropertyTracker tracker_;
};

}  // namespace sgutils
