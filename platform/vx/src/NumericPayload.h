// Not installed; internal to the array runtime.
//
// Payload of numeric, logical and char arrays: zero-filled plain bytes.
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

  std::byte* data() noexcept { return bytes_.get(); }
  const std::byte* data() const noexcept { return bytes_.get(); }

 private:
  vxSize numel_;
  vxSize elementBytes_;
  std::unique_ptr<std::byte[]> bytes_;
};

}  // namespace vx::impl
