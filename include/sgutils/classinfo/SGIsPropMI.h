// isprop on graphics objects: true where the object has a property of exactly
// that name, or one that differs only in case and that the public client may
// read or write. A shortened name is not a property.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGIsPropMI : public COSMethodBase {
 public:
  explicit SGIsPropMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
