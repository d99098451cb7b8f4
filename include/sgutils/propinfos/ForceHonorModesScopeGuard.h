// Marks an object so that the values it fans out to its parts leave their
// manual properties alone, for the guard's lifetime. Only the outermost guard
// on an object sets and clears the mark; an inner one stays inactive.
#pragma once

#include "sgutils/SgutilsExport.h"
#include <string>

#include "vcos/COSDataTypePtr.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

class SGUTILS_API ForceHonorModesScopeGuard {
 public:
  ForceHonorModesScopeGuard() noexcept = default;
  explicit ForceHonorModesScopeGuard(COSInterface* object) : ForceHonorModesScopeGuard(object, true) {}
  ForceHonorModesScopeGuard(COSInterface* object, bool enable);
  ForceHonorModesScopeGuard(ForceHonorModesScopeGuard&& other) noexcept;
  ForceHonorModesScopeGuard& operator=(ForceHonorModesScopeGuard&& other) noexcept;
  ForceHonorModesScopeGuard(const ForceHonorModesScopeGuard&) = delete;
  ForceHonorModesScopeGuard& operator=(const ForceHonorModesScopeGuard&) = delete;
  ~ForceHonorModesScopeGuard() { release(); }

  // A guard on `to` when `from` is marked, else an inactive guard.
  static ForceHonorModesScopeGuard copyState(COSInterface* from, COSInterface* to);
  void release() noexcept;
  bool isActive() const noexcept { return active_; }

 private:
  COSInterfacePtr object_{nullptr, COSWeakReference};
  bool active_ = false;
};

// Passes a value on to the part `target` of a composite: writes `<name>_I`,
// and, with `honorModes`, only while `<name>Mode` is auto, under a guard that
// marks the target's own fan-outs.
SGUTILS_API void setFanoutProperty(const COSValue& value, COSDataTypePtr& type, COSInterfacePtr& target,
                                   std::string name, bool honorModes);

}  // namespace sgutils
