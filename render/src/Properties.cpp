#include "Properties.h"

#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/vx.h"

namespace sgrender::props {

matrix::unique_vxArray value(COSInterface* object, const char* name) {
  matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(object)));
  matrix::unique_vxArray v(vxGetProperty(self.get(), 0, name));
  // A data property never set holds no array: read it as empty.
  if (!v) v.reset(vxCreateDoubleMatrix(0, 0, vxREAL));
  return v;
}

std::optional<std::array<double, 3>> color(COSInterface* object, const char* name) {
  matrix::unique_vxArray v = value(object, name);
  if (!vxIsDouble(v.get()) || vxGetNumberOfElements(v.get()) < 3) return std::nullopt;
  const double* p = vxGetPr(v.get());
  return std::array<double, 3>{p[0], p[1], p[2]};
}

double number(COSInterface* object, const char* name, double fallback) {
  matrix::unique_vxArray v = value(object, name);
  if (!vxIsNumeric(v.get()) || vxGetNumberOfElements(v.get()) == 0) return fallback;
  return vxGetScalar(v.get());
}

std::string text(COSInterface* object, const char* name) {
  matrix::unique_vxArray v = value(object, name);
  if (!vxIsChar(v.get()) && !vxIsString(v.get())) return {};
  return vxArrayToStdString(v.get());
}

bool isOn(COSInterface* object, const char* name) {
  matrix::unique_vxArray v = value(object, name);
  if (vxIsChar(v.get()) || vxIsString(v.get())) return vxArrayToStdString(v.get()) == "on";
  return vxGetNumberOfElements(v.get()) != 0 && vxGetScalar(v.get()) != 0;
}

std::vector<double> numbers(COSInterface* object, const char* name) {
  matrix::unique_vxArray v = value(object, name);
  if (!vxIsDouble(v.get()) || vxIsComplex(v.get())) return {};
  const double* p = vxGetPr(v.get());
  return std::vector<double>(p, p + vxGetNumberOfElements(v.get()));
}

std::array<std::size_t, 2> size(COSInterface* object, const char* name) {
  matrix::unique_vxArray v = value(object, name);
  return {vxGetM(v.get()), vxGetN(v.get())};
}

}  // namespace sgrender::props
