// Not installed; internal to sgshell.
// Indexing with ( ) and { }: reading, assignment with growth, and deletion.
// An index argument is a number array (one-based), a logical mask, or the
// char ':' for a whole dimension.
#pragma once

#include <span>
#include <vector>

#include "eval/ArrayOps.h"

namespace sgsh::ops {

// Zero-based positions selected by the arguments, and the shape of the
// result. Raises for bad or out-of-range indices.
struct Selection {
  std::vector<vxIndex> positions;
  Dims dims;
};
Selection select(const vxArray* a, std::span<const Value> args);

// a(args)
Value indexGet(const vxArray* a, std::span<const Value> args);
// a(args) = rhs, growing a when the indices reach past its end; a may be
// empty (an undefined variable). rhs == [] deletes elements. The in-place
// form writes into a's own storage when no other array shares it, and
// checks everything that can fail first: on an error a is unchanged.
void indexAssignInPlace(Value& a, std::span<const Value> args, const vxArray* rhs);
Value indexAssign(Value a, std::span<const Value> args, const vxArray* rhs);
// c{args} = v for one element; c may be empty. Same guarantee in place.
void braceAssignInPlace(Value& c, std::span<const Value> args, Value v);
Value braceAssign(Value c, std::span<const Value> args, Value v);
// The one position a{args} or a(args) names when assigning, growing a as
// needed; used for nested places such as c{2}.f = 1.
vxIndex assignPosition(Value& a, std::span<const Value> args, vxClassID classIfNew);

bool isColon(const vxArray* arg) noexcept;

}  // namespace sgsh::ops
