// Tick positions at readable steps (1, 2 or 5 times a power of ten).
#pragma once

#include <vector>

#include "sgrender/SgrenderExport.h"

namespace sgrender {

class SGRENDER_API TickSteps {
 public:
  // The step for [lo, hi] that gives at most `maxTicks` ticks (at least 2
  // are asked for); 0 when the range is empty or not finite.
  static double stepFor(double lo, double hi, int maxTicks);
  // The multiples of that step within [lo, hi], ends included.
  static std::vector<double> ticksFor(double lo, double hi, int maxTicks);
};

}  // namespace sgrender
