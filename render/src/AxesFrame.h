// The data-to-device mapping of one axes. Not installed.
#pragma once

#include <cmath>

namespace sgrender {

struct AxesFrame {
  double x0, y0, w, h;        // device rectangle, y0 at the top
  double xlo, xhi, ylo, yhi;  // limits (positive on a log scale)
  bool xlog = false, ylog = false;
  // A value on a log scale that is not positive maps to no finite place.
  double px(double x) const { return x0 + share(x, xlo, xhi, xlog) * w; }
  double py(double y) const { return y0 + h - share(y, ylo, yhi, ylog) * h; }
  bool operator==(const AxesFrame&) const = default;

 private:
  static double share(double v, double lo, double hi, bool log) {
    if (!log) return (v - lo) / (hi - lo);
    return v > 0 ? std::log(v / lo) / std::log(hi / lo) : NAN;
  }
};

}  // namespace sgrender
