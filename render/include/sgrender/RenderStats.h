// What one export drew, counted by kind of object. The counts are of
// objects drawn anew; a view that replays what it drew before counts those
// in `reused` instead.
#pragma once

#include <cstddef>

namespace sgrender {

struct RenderStats {
  std::size_t axes = 0;
  std::size_t lines = 0;
  std::size_t patches = 0;
  std::size_t texts = 0;
  std::size_t skippedInvalid = 0;  // lines whose data lengths differ
  std::size_t reused = 0;          // lines, patches and texts replayed unchanged
};

}  // namespace sgrender
