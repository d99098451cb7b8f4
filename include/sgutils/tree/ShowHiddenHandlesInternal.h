// The library's own switch that lifts hiding: while it is on, a child's
// HandleVisibility no longer hides it from list operations (an Internal or
// deleted object stays hidden). It is a process-wide flag for the thread
// that runs the class-object system; open it with the scope guard.
#pragma once

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API ShowHiddenHandlesInternal {
 public:
  static void SetShowHiddenHandlesInternalFlag(bool on) noexcept;
  static bool GetShowHiddenHandlesInternalFlag() noexcept;

  // Turns the flag on for a scope and puts back what it found on every exit,
  // so guards nest.
  class SGUTILS_API ShowHiddenHandlesInternalScopeGuard {
   public:
    ShowHiddenHandlesInternalScopeGuard() noexcept;
    ~ShowHiddenHandlesInternalScopeGuard();
    ShowHiddenHandlesInternalScopeGuard(const ShowHiddenHandlesInternalScopeGuard&) = delete;
    ShowHiddenHandlesInternalScopeGuard& operator=(const ShowHiddenHandlesInternalScopeGuard&) = delete;

   private:
    bool saved_;
  };
};

}  // namespace sgutils
