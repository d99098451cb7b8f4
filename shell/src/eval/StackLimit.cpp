// The stack bounds come from the thread's attributes once per thread; each
// check is then one comparison with the current frame address.
#include "eval/StackLimit.h"

#include <pthread.h>

#include <cstdint>

#include <foundation/core/except/Error.h>

namespace sgsh {

namespace {

// Room kept free below the deepest evaluator frame: what a built-in or the
// runtime below it may need, with room for sanitizer-sized frames.
constexpr std::uintptr_t kReserve = 1024 * 1024;

std::uintptr_t lowestAllowed() {
  pthread_attr_t attr;
  void* addr = nullptr;
  std::size_t size = 0;
  std::uintptr_t low = 0;
  if (pthread_getattr_np(pthread_self(), &attr) == 0) {
    if (pthread_attr_getstack(&attr, &addr, &size) == 0 && size > 2 * kReserve)
      low = reinterpret_cast<std::uintptr_t>(addr) + kReserve;
    pthread_attr_destroy(&attr);
  }
  return low;  // 0: unknown bounds, no check
}

}  // namespace

void checkStackRoom() {
  thread_local const std::uintptr_t low = lowestAllowed();
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  if (here < low) throw foundation::core::except::Error("VANTEL:sgsh:StackExhausted");
}

}  // namespace sgsh
