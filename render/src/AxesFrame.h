// The data-to-device mapping of one axes. Not installed.
#pragma once

namespace sgrender {

struct AxesFrame {
  double x0, y0, w, h;        // device rectangle, y0 at the top
  double xlo, xhi, ylo, yhi;  // limits
  double px(double x) const { return x0 + (x - xlo) / (xhi - xlo) * w; }
  double py(double y) const { return y0 + h - (y - ylo) / (yhi - ylo) * h; }
  bool operator==(const AxesFrame&) const = default;
};

}  // namespace sgrender
