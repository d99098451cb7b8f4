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
  // The multiples of that step within [lo, hi], ends included. On a log
  // scale (lo > 0): the powers of ten within [lo, hi], every k-th decade so
  // that at most `maxTicks` remain; a range of less than two decades takes
  // the linear ticks instead, which read better there.
  static std::vector<double> ticksFor(double lo, double hi, int maxTicks, bool log = false);
  // The minor grid between and around those ticks, ticks excluded: a fifth
  // of the step (a quarter of a step of 2 times a power of ten); on a log
  // scale with decade ticks, 2 to 9 times each power of ten.
  static std::vector<double> minorTicksFor(double lo, double hi, int maxTicks, bool log = false);
};

}  // namespace sgrender
