// Cell arrays. A cell owns its elements; replacing one destroys the old one.
#include "vx/vxCell.h"

#include "CellPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using namespace vx::impl;

namespace {

const CellPayload& cellsOf(const vxArray* array, vxIndex index) {
  assert(array && "array required");
  if (array->cls() != vxCELL_CLASS) raiseWrongClass(*array, "cell");
  const auto& c = *static_cast<const CellPayload*>(array->payload.get());
  if (index >= c.cells.size()) raiseIndexOutOfRange(index, c.cells.size());
  return c;
}

}  // namespace

vxArray* vxGetCell(const vxArray* array, vxIndex index) { return cellsOf(array, index).cells[index].get(); }

void vxSetCell(vxArray* array, vxIndex index, vxArray* value) {
  // Storing the value the slot already holds changes nothing; checked before
  // unsharing, which would give the slot a new header.
  if (cellsOf(array, index).cells[index].get() == value) return;
  makeWritable(*array);
  ElementRef& slot = static_cast<CellPayload*>(array->payload.get())->cells[index];
  adoptIntoContainer(value);
  slot.reset(value);
}
