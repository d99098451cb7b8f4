// Not installed; internal to the array runtime.
//
// Payload of a function-handle array: the language's data behind the handle.
#pragma once

#include <memory>

#include "Payload.h"
#include "vx/vxFunctionHandleData.h"

namespace vx::impl {

class FunctionHandlePayload final : public Payload {
 public:
  explicit FunctionHandlePayload(std::shared_ptr<const vxFunctionHandleData> d) : data(std::move(d)) {}

  PayloadRef clone(Depth depth) const override;
  // A handle is always 1-by-1; the caller has checked the count.
  void resize(vxSize) override {}
  bool holdsObjects() const override { return false; }

  std::shared_ptr<const vxFunctionHandleData> data;
};

}  // namespace vx::impl
