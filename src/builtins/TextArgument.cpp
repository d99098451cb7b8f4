#include "src/builtins/TextArgument.h"

#include "foundation/core/except/Error.h"
#include "vx/vx.h"

namespace sgutils::builtins {

std::string readTextArgument(const vxArray* value) {
  using foundation::core::except::Error;
  if (value && vxIsString(value) && vxGetNumberOfElements(value) == 1) {
    if (!vxGetStringElement(value, 0)) throw Error("VANTEL:string:MissingNotSupported");
    return vxArrayToStdString(value);
  }
  const bool charRow = value && vxIsChar(value) && vxGetNumberOfDimensions(value) == 2 &&
                       (vxGetDimensions(value)[0] == 1 || vxGetNumberOfElements(value) == 0);
  if (!charRow) throw Error("VANTEL:string:MustBeStringScalarOrCharacterVector");
  return vxArrayToStdString(value);
}

}  // namespace sgutils::builtins
