// What a pointer hit reports: the button, the point where the pointer met the
// object (in data coordinates), and the primitive that was hit.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "vcos/COSInterfacePtr.h"

namespace graphics::eventdata {

struct HitImpl {
  std::int32_t button = 1;
  std::array<double, 3> intersectionPoint{NAN, NAN, NAN};
  COSInterfacePtr primitive;
};

}  // namespace graphics::eventdata
