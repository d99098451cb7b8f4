// What the rows of GraphicsProperties.def need besides their property
// classes (GraphicsPropertyKinds.h): the initial value of the struct
// properties.
#include "src/classinfo/GraphicsPropertyKinds.h"

namespace sgutils::detail {

COSValue sharedEmptyStruct() {
  static vxArray* const initial = [] {
    vxArray* s = vxCreateStructMatrix(1, 1, 0, nullptr);
    vxSetArrayScope(s, vxSCOPE_PERSISTENT);
    return s;
  }();
  return COSValue(initial);
}

}  // namespace sgutils::detail
