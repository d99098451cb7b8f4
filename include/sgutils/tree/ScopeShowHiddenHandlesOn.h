// Turns the root's ShowHiddenHandles on for a scope and puts back the value
// it found. The root must outlive the guard; without a root (the accessor
// answers null) construction raises "VANTEL:root:Deleted".
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

class SGUTILS_API ScopeShowHiddenHandlesOn {
 public:
  ScopeShowHiddenHandlesOn();
  ~ScopeShowHiddenHandlesOn();
  ScopeShowHiddenHandlesOn(const ScopeShowHiddenHandlesOn&) = delete;
  ScopeShowHiddenHandlesOn& operator=(const ScopeShowHiddenHandlesOn&) = delete;

 private:
  COSInterfacePtr showHiddenProperty;
  bool savedValue = false;
};

}  // namespace sgutils
