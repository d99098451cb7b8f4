#include "sgrender/TickSteps.h"

#include <algorithm>
#include <cmath>

namespace sgrender {

double TickSteps::stepFor(double lo, double hi, int maxTicks) {
  if (!std::isfinite(lo) || !std::isfinite(hi) || hi <= lo) return 0;
  const int intervals = std::max(maxTicks, 2) - 1;
  const double raw = (hi - lo) / intervals;
  const double power = std::pow(10.0, std::floor(std::log10(raw)));
  for (double m : {1.0, 2.0, 5.0, 10.0})
    if (m * power >= raw * (1 - 1e-9)) return m * power;
  return 10 * power;
}

std::vector<double> TickSteps::ticksFor(double lo, double hi, int maxTicks) {
  std::vector<double> ticks;
  const double step = stepFor(lo, hi, maxTicks);
  if (step == 0) return ticks;
  const double first = std::ceil(lo / step - 1e-9);
  const double last = std::floor(hi / step + 1e-9);
  for (double k = first; k <= last; ++k) {
    const double t = k * step;
    ticks.push_back(std::abs(t) < step * 1e-9 ? 0.0 : t);  // no "-0" labels
  }
  return ticks;
}

}  // namespace sgrender
