// A second interpreter instance for the time of a scope: while the guard
// lives, the per-instance store answers from a fresh, empty instance; when it
// ends, that instance's values are freed and the previous instance is current
// again. This is how tests check that per-instance caches are per instance.
#pragma once

#include <memory>

#include "foundation/PlatformExport.h"

namespace foundation::usm {

class Instance;

class FOUNDATION_API ScopedInstance {
 public:
  ScopedInstance();
  ~ScopedInstance();
  ScopedInstance(const ScopedInstance&) = delete;
  ScopedInstance& operator=(const ScopedInstance&) = delete;

 private:
  std::unique_ptr<Instance> instance_;
  Instance* previous_;
};

// Number of instances alive, the process's own included; more than one only
// while a test has asked for more.
FOUNDATION_API int instanceCount() noexcept;

}  // namespace foundation::usm
