// A list of property names with owned values, in the order they are to be
// set: the defaults that apply to one object.
#pragma once

#include <utility>
#include <vector>

#include "sgutils/defaults/DefaultPairName.h"
#include "vx/matrix.h"

namespace sgutils {

using PropValuePairs = std::vector<std::pair<DefaultPairName, matrix::unique_vxArray>>;

}  // namespace sgutils
