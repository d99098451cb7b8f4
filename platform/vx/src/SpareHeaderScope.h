// Not installed; internal to the platform library.
//
// While one is open on a thread, the next array header made there may take
// the room of the last header freed on that thread instead of a new
// allocation. Opened around a get whose new value goes straight to a caller
// that drops it soon (a read by name in a loop), so such a loop allocates
// and frees no header. Elsewhere a new array allocates its header as usual.
#pragma once

namespace vx::impl {

class SpareHeaderScope {
 public:
  SpareHeaderScope() noexcept;
  ~SpareHeaderScope();
  SpareHeaderScope(const SpareHeaderScope&) = delete;
  SpareHeaderScope& operator=(const SpareHeaderScope&) = delete;
};

}  // namespace vx::impl
