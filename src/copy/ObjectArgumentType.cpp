#include "src/copy/ObjectArgumentType.h"

#include "foundation/core/except/Error.h"

namespace sgutils::copy {

bool ObjectArgumentType::checkValue(COSValue value, bool raise) const {
  const auto* array = value.asPointer<const vxArray>();
  const bool ok = array && vxIsObject(array) && vxIsA(array, className_.c_str());
  if (!ok && raise) throw foundation::core::except::Error("VANTEL:vcos:InvalidValueForType", className_.c_str());
  return ok;
}

}  // namespace sgutils::copy
