// Not installed; internal to the array runtime.
//
// Payload of string arrays: each element is UTF-16 text, or missing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Payload.h"

namespace vx::impl {

class StringPayload final : public Payload {
 public:
  explicit StringPayload(vxSize numel) : strings(numel) {}

  PayloadRef clone(Depth depth) const override;
  void resize(vxSize numel) override { strings.resize(numel); }
  bool holdsObjects() const override { return false; }

  std::vector<std::optional<std::u16string>> strings;
};

}  // namespace vx::impl
