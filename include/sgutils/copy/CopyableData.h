// The per-object data of the Copyable mixin: whether the object may be
// copied, and the tasks now running copyElement on it (innermost last).
#pragma once

#include <vector>

namespace sgutils {

struct CopyTask;

struct CopyableData {
  bool copyable = true;
  // Empty costs no allocation: every object carries this.
  std::vector<CopyTask*> activeTasks;
};

}  // namespace sgutils
