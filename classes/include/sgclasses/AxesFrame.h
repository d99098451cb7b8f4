// The data-to-device mapping of one axes, the one that drawing and picking
// both use: a device rectangle and the axes' limits, each axis linear or by
// the logarithm.
#pragma once

#include <cmath>

#include "sgclasses/SgclassesExport.h"

class COSInterface;

namespace sgclasses {

struct AxesFrame {
  double x0, y0, w, h;        // device rectangle, y0 at the top
  double xlo, xhi, ylo, yhi;  // limits (positive on a log scale)
  bool xlog = false, ylog = false;

  // The frame of `axes` drawn into the device rectangle (x0, y0, w, h):
  // limits that are not increasing read as [0 1]; on a log scale a lower
  // limit that is not positive (set by hand) becomes three decades below the
  // upper, and with no positive upper limit the axis stays linear.
  SGCLASSES_API static AxesFrame of(COSInterface* axes, double x0, double y0, double w, double h);

  // A value on a log scale that is not positive maps to no finite place.
  double px(double x) const { return x0 + share(x, xlo, xhi, xlog) * w; }
  double py(double y) const { return y0 + h - share(y, ylo, yhi, ylog) * h; }
  // The data values at a device place: the inverse of px and py.
  double dataX(double px) const { return unshare((px - x0) / w, xlo, xhi, xlog); }
  double dataY(double py) const { return unshare((y0 + h - py) / h, ylo, yhi, ylog); }
  // The data value a share t of the way, as drawn, from a to b: exact on
  // a linear axis (a + t (b - a)), by the logarithm on a log one.
  double betweenX(double a, double b, double t) const { return between(a, b, t, xlog); }
  double betweenY(double a, double b, double t) const { return between(a, b, t, ylog); }
  bool operator==(const AxesFrame&) const = default;

 private:
  static double share(double v, double lo, double hi, bool log) {
    if (!log) return (v - lo) / (hi - lo);
    return v > 0 ? std::log(v / lo) / std::log(hi / lo) : NAN;
  }
  static double between(double a, double b, double t, bool log) {
    return log ? a * std::pow(b / a, t) : a + t * (b - a);
  }
  static double unshare(double s, double lo, double hi, bool log) {
    return log ? lo * std::pow(hi / lo, s) : lo + s * (hi - lo);
  }
};

}  // namespace sgclasses
