// Not installed; internal to sgshell.
// Concatenation of the pieces of [ ] and { } literals.
#pragma once

#include <vector>

#include "sgsh/Value.h"

namespace sgsh::ops {

// [a, b, ...] when horizontal, [a; b; ...] otherwise. Empty [] pieces are
// skipped; the class of the result follows the pieces (cell over struct
// over string over char over integer over single over double over logical).
Value concat(std::vector<Value>& pieces, bool horizontal);

}  // namespace sgsh::ops
