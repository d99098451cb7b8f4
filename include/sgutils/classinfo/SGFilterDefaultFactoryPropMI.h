// filterDefaultFactoryPropName(object, name): the full name of the property
// that a name finds on the object (by the class's look-up, then among its
// dynamic properties), as text.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/classinfo/SGDefaultFactoryPropHandlerBaseMI.h"

class SGUTILS_API SGFilterDefaultFactoryPropMI : public SGDefaultFactoryPropHandlerBaseMI {
 public:
  explicit SGFilterDefaultFactoryPropMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
