// The built-in functions of the colour data. Values leave through the
// conversion of their data type to "any", as every typed value does.
#include "sgutils/colorvalues/ColorBuiltins.h"

#include "foundation/core/except/Error.h"
#include "sgutils/colorvalues/ColorValues.h"
#include "src/builtins/TextArgument.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vx.h"

namespace {

template <class Value>
vxArray* asArray(const Value& value, const char* typeName) {
  static const COSID any("any");
  COSTypeConversion* c = COSTypeRepository::getConversion(COSID(typeName), any);
  if (!c) throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", typeName, "any");
  return c->convert(COSValue(&value)).asPointer<vxArray>();
}

}  // namespace

extern "C" void colorOrderValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs > 1) matrix::detail::error_maxrhs();
  if (nrhs < 1) matrix::detail::error_minrhs();
  const auto order = sgutils::colorvalues::getNamedColorOrder(sgutils::builtins::readTextArgument(prhs[0]));
  plhs[0] = asArray(order, "vantel.graphics.datatype.ColorOrder");
}

extern "C" void lumenColormapValues(int nlhs, vxArray* plhs[], int nrhs, const vxArray*[]) {
  if (nlhs > 1) matrix::detail::error_maxlhs();
  if (nrhs > 0) matrix::detail::error_maxrhs();
  plhs[0] = asArray(sgutils::colorvalues::factoryColorMap(), "vantel.graphics.datatype.ColorMap");
}
