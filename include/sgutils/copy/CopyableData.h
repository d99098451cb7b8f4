// The per-object data of the Copyable mixin: whether the object may be
// copied, and the tasks now running copyElement on it (innermost last).
#pragma once

#include <vector>

namespace sgutils {

struct CopyTask;

struct CopyableData {
  bool copyable = true;
  // A vector, not a deque: an empty deque allocates, and every Copyable
  // object is made with this data.
  std::vector<CopyTask*> activeTasks;
};

}  // namespace sgutils
