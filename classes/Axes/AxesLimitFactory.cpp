// The factory values of the axes limits (see AxesLimitFactory.h).
#include "sgclasses/AxesLimitFactory.h"

#include <array>

#include "vx/vx.h"

namespace sgclasses {

namespace {

vxArray* persistent(vxArray* a) {
  vxSetArrayScope(a, vxSCOPE_PERSISTENT);
  return a;
}

vxArray* limitRow(double lo, double hi) {
  vxArray* row = vxCreateDoubleMatrix(1, 2, vxREAL);
  vxGetPr(row)[0] = lo;
  vxGetPr(row)[1] = hi;
  return persistent(row);
}

}  // namespace

std::uintptr_t limitFactoryWord(int dimension) {
  static const std::array<vxArray*, 3> rows = {limitRow(0, 1), limitRow(0, 1), limitRow(-1, 1)};
  return reinterpret_cast<std::uintptr_t>(rows.at(static_cast<std::size_t>(dimension)));
}

std::uintptr_t limitModeFactoryWord() {
  static vxArray* const mode = persistent(vxCreateString("auto"));
  return reinterpret_cast<std::uintptr_t>(mode);
}

}  // namespace sgclasses
