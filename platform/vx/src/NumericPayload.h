// Not installed; internal to the array runtime.
//
// Payload of numeric, logical and char arrays: zero-filled plain bytes. A
// growing payload keeps spare room (half its size again), so arrays that
// grow an element at a time copy their bytes a logarithmic number of times.
// Up to kSmallBytes (a colour, a position) live in the payload itself, so
// such an array costs no separate allocation for its elements. The last
// small payload freed on a thread is kept for the next small array made on
// it (make, keepIfSmall), so a colour read and dropped in a loop allocates
// and frees no payload.
#pragma once

#include <cstddef>
#include <memory>

#include "Payload.h"

namespace vx::impl {

class NumericPayload final : public Payload {
 public:
  NumericPayload(vxSize numel, vxSize elementBytes);

  // A new zero-filled payload; a small one is the kept one where there is one.
  static PayloadRef make(vxSize numel, vxSize elementBytes);
  // Keeps a small payload whose last reference ended for the next make, and
  // answers true; false: the caller deletes it.
  static bool keepIfSmall(NumericPayload* p) noexcept;

  PayloadRef clone(Depth depth) const override;
  void resize(vxSize numel) override;
  bool holdsObjects() const override { return false; }

  std::byte* data() noexcept { return bytes_ ? bytes_.get() : small_; }
  const std::byte* data() const noexcept { return bytes_ ? bytes_.get() : small_; }

 private:
  static constexpr vxSize kSmallBytes = 32;

  vxSize numel_;
  vxSize capacity_;  // elements the bytes have room for
  vxSize elementBytes_;
  std::unique_ptr<std::byte[]> bytes_;  // null while the elements fit in small_
  alignas(8) std::byte small_[kSmallBytes] = {};
};

}  // namespace vx::impl
