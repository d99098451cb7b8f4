// What one export drew, counted by kind of object.
#pragma once

#include <cstddef>

namespace sgrender {

struct RenderStats {
  std::size_t axes = 0;
  std::size_t lines = 0;
  std::size_t patches = 0;
  std::size_t texts = 0;
  std::size_t skippedInvalid = 0;  // lines whose data lengths differ
};

}  // namespace sgrender
