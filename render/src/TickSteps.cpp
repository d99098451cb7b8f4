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

namespace {
// Decade ticks of a log axis: 10^k for k in [first, last] by `every`.
struct Decades {
  int first = 0, last = -1, every = 1;
};
Decades decadesOf(double lo, double hi, int maxTicks) {
  Decades d;
  if (!(lo > 0) || !(hi > lo) || !std::isfinite(hi)) return d;
  d.first = int(std::ceil(std::log10(lo) - 1e-9));
  d.last = int(std::floor(std::log10(hi) + 1e-9));
  const int count = d.last - d.first + 1;
  d.every = std::max(1, (count + std::max(maxTicks, 2) - 1) / std::max(maxTicks, 2));
  return d;
}
bool useDecades(double lo, double hi) { return lo > 0 && hi / lo >= 100; }
}  // namespace

std::vector<double> TickSteps::ticksFor(double lo, double hi, int maxTicks, bool log) {
  std::vector<double> ticks;
  if (log && useDecades(lo, hi)) {
    const Decades d = decadesOf(lo, hi, maxTicks);
    for (int k = d.first; k <= d.last; k += d.every) ticks.push_back(std::pow(10.0, k));
    return ticks;
  }
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

std::vector<double> TickSteps::minorTicksFor(double lo, double hi, int maxTicks, bool log) {
  std::vector<double> minor;
  if (log && useDecades(lo, hi)) {
    const Decades d = decadesOf(lo, hi, maxTicks);
    if (d.every != 1) return minor;  // decades apart: the ticks are grid enough
    for (int k = d.first - 1; k <= d.last; ++k)
      for (int m = 2; m <= 9; ++m) {
        const double t = m * std::pow(10.0, k);
        if (t >= lo * (1 - 1e-9) && t <= hi * (1 + 1e-9)) minor.push_back(t);
      }
    return minor;
  }
  const double step = stepFor(lo, hi, maxTicks);
  if (step == 0) return minor;
  const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
  const int parts = std::abs(mantissa - 2) < 1e-6 ? 4 : 5;
  const double sub = step / parts;
  const double first = std::ceil(lo / sub - 1e-9);
  const double last = std::floor(hi / sub + 1e-9);
  for (double k = first; k <= last; ++k)
    if (std::fmod(std::abs(k), parts) != 0) minor.push_back(k * sub);
  return minor;
}

}  // namespace sgrender
