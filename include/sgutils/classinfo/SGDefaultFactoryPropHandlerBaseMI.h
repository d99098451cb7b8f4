// The base of the four default and factory handlers of
// GraphicsPropertyHandler: their signature takes objects of
// "vantel.mixin.internal.DefaultFactoryPropHandler" (the handler works on
// element 0), a name and, for setDefaultPropValue, an optional value; one
// output. A call whose first input is no array of that class, or that has
// too few or too many inputs, matches no signature
// ("VANTEL:vcos:NoMatchingSignature").
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGDefaultFactoryPropHandlerBaseMI : public COSMethodBase {
 public:
  enum class ValueInput { None, Optional };
  SGDefaultFactoryPropHandlerBaseMI(COSID classId, const char* name, ValueInput value = ValueInput::None);
};
