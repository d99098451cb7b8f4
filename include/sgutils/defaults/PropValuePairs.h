// A list of property names with owned values, in the order they are to be
// set: the defaults that apply to one object.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "vx/matrix.h"

namespace sgutils {

using PropValuePairs = std::vector<std::pair<std::string, matrix::unique_vxArray>>;

}  // namespace sgutils
