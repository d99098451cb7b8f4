// Not installed; internal to the array runtime.
//
// Payload of cell arrays: one owned element per slot, null for an empty slot.
#pragma once

#include <vector>

#include "Payload.h"
#include "vxArrayHeader.h"

namespace vx::impl {

class CellPayload final : public Payload {
 public:
  explicit CellPayload(vxSize numel) : cells(numel) {}

  PayloadRef clone(Depth depth) const override;
  void resize(vxSize numel) override { cells.resize(numel); }
  bool holdsObjects() const override;

  std::vector<ElementRef> cells;
};

}  // namespace vx::impl
