// The per-object data of the Copyable mixin: whether the object may be
// copied, and the tasks now running copyElement on it (innermost last).
#pragma once

#include <deque>

namespace sgutils {

struct CopyTask;

struct CopyableData {
  bool copyable = true;
  std::deque<CopyTask*> activeTasks;
};

}  // namespace sgutils
