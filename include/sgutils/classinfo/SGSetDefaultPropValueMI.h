// setDefaultPropValue(object, name, value): a default written by name on
// element 0; the values "default" and "remove" take it out, a factory name
// raises "VANTEL:sgutils:CannotSetFactoryValue", an empty name
// "VANTEL:sg:InvalidProperty".
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/classinfo/SGDefaultFactoryPropHandlerBaseMI.h"

class SGUTILS_API SGSetDefaultPropValueMI : public SGDefaultFactoryPropHandlerBaseMI {
 public:
  explicit SGSetDefaultPropValueMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
