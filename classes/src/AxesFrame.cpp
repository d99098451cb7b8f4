#include "sgclasses/AxesFrame.h"

#include <array>

#include "sgutils/objects/Axes.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {

// The limits as the language reads them (auto limits included).
std::array<double, 2> limits(COSInterface* axes, const char* name) {
  matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(axes)));
  matrix::unique_vxArray lim(vxGetProperty(self.get(), 0, name));
  if (!lim || !vxIsDouble(lim.get()) || vxIsComplex(lim.get()) || vxGetNumberOfElements(lim.get()) < 2) return {0, 1};
  const double* p = vxGetPr(lim.get());
  if (!(p[1] > p[0])) return {0, 1};
  return {p[0], p[1]};
}

bool logLimits(AxisScale scale, std::array<double, 2>& lim) {
  if (scale != AxisScale::Log || !(lim[1] > 0)) return false;
  if (!(lim[0] > 0)) lim[0] = lim[1] / 1000;
  return true;
}

}  // namespace

AxesFrame AxesFrame::of(COSInterface* axes, double x0, double y0, double w, double h) {
  std::array<double, 2> xl = limits(axes, "XLim"), yl = limits(axes, "YLim");
  const Axes* block = sgutils::blockOf<Axes>(axes, Axes::classID());
  const bool xlog = block && logLimits(block->getXScale(), xl);
  const bool ylog = block && logLimits(block->getYScale(), yl);
  return {x0, y0, w, h, xl[0], xl[1], yl[0], yl[1], xlog, ylog};
}

}  // namespace sgclasses
