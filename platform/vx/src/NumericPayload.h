// Not installed; internal to the array runtime.
//
// Payload of numeric, logical and char arrays: zero-filled plain bytes. A
// growing payload keeps spare room (half its size again), so arrays that
// grow an element at a time copy their bytes a logarithmic number of times.
// Up to kSmallBytes (a colour, a position) live in the payload itself, so
// such an array costs no separate allocation for its elements.
#pragma once

#include <cstddef>
#include <memory>

#include "Payload.h"

namespace vx::impl {

class NumericPayload final : public Payload {
 public:
  NumericPayload(vxSize numel, vxSize elementBytes);

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
