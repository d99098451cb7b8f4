// Property reads and writes on one object as the language does them: through
// a 1-by-1 object array and the public client path, values as arrays.
#pragma once

#include <string>

#include "vcos/COSInterfacePtr.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgtest {

inline matrix::unique_vxArray obj(const COSInterfacePtr& object) {
  return matrix::unique_vxArray(omCreateVCOSScalar(object));
}
inline matrix::unique_vxArray get(const COSInterfacePtr& object, const char* name) {
  matrix::unique_vxArray self = obj(object);
  return matrix::unique_vxArray(vxGetProperty(self.get(), 0, name));
}
inline void set(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  matrix::unique_vxArray self = obj(object);
  vxSetProperty(self.get(), 0, name, value);
}
inline std::string getText(const COSInterfacePtr& object, const char* name) {
  return vxArrayToStdString(get(object, name).get());
}

}  // namespace sgtest
