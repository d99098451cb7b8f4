// isChildProperty(object, name): whether the property of that name holds the
// object's children, as its Graphics block says (a logical scalar).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API IsChildPropertyMI : public COSMethodBase {
 public:
  explicit IsChildPropertyMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
