// The dimensions-and-class compact representation of an array, for the
// compact display providers of object classes.
#include "vcos/CompactRepresentation.h"

#include <string>

#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/ValueText.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace vcos {

namespace {

bool isText(const vxArray* a) { return a && ((vxIsChar(a) && vxGetM(a) <= 1) || (vxIsString(a) && vxIsScalar(a))); }

bool isTrueScalar(const vxArray* a) {
  if (!a || vxGetNumberOfElements(a) != 1) throw Error("VANTEL:vcos:display:BadOption", "UseSimpleName");
  if (vxIsLogical(a)) return vxGetLogicals(a)[0];
  if (!vxIsNumeric(a)) throw Error("VANTEL:vcos:display:BadOption", "UseSimpleName");
  return vxGetScalar(a) != 0;
}

std::string classNameOf(const vxArray* a) {
  if (COSClass* cls = omIsVCOS(a) ? array::classOf(a) : nullptr) return cls->getName();
  return vxGetClassName(a);
}

}  // namespace

void dimensionsAndClassNameRepresentation(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs < 2) matrix::detail::error_minrhs();
  if ((nrhs - 2) % 2 != 0) throw Error("VANTEL:vcos:display:BadOption", "");
  bool simpleName = false;
  std::string className;
  bool classGiven = false;
  for (int i = 2; i < nrhs; i += 2) {
    if (!isText(prhs[i])) throw Error("VANTEL:vcos:display:BadOption", "");
    const std::string option = vxArrayToStdString(prhs[i]);
    if (option == "UseSimpleName") {
      simpleName = isTrueScalar(prhs[i + 1]);
    } else if (option == "ClassName") {
      if (!isText(prhs[i + 1])) throw Error("VANTEL:vcos:display:BadOption", option);
      className = vxArrayToStdString(prhs[i + 1]);
      classGiven = true;
    } else {
      throw Error("VANTEL:vcos:display:UnknownOption", option);
    }
  }
  const vxArray* objects = prhs[0];
  if (!classGiven) className = objects ? classNameOf(objects) : "double";
  if (simpleName) {
    const std::size_t dot = className.rfind('.');
    if (dot != std::string::npos) className.erase(0, dot + 1);
  }
  const std::string dims = objects ? builtin::dimensionsText(objects) : "0x0";
  plhs[0] = vxCreateString((dims + " " + className).c_str());
}

}  // namespace vcos
