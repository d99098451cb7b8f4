// Not installed; internal to sgshell.
// The arithmetic, comparison and logical operators over arrays, with
// scalar expansion and implicit expansion of singleton dimensions, matrix
// products and solves, and transposes.
#pragma once

#include "sgsh/Node.h"
#include "sgsh/Value.h"

namespace sgsh::ops {

Value binary(Op op, const vxArray* a, const vxArray* b);
Value unary(Op op, const vxArray* a);
// first:last or first:step:last as a double row (a char row when both ends
// are chars).
Value range(const vxArray* first, const vxArray* step, const vxArray* last);
std::size_t rangeCount(double first, double step, double last);

}  // namespace sgsh::ops
