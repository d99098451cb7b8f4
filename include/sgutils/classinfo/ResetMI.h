// The method "reset" of graphics objects: resets each element of an object
// array in order (see SGHandle::Reset).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API ResetMI : public COSMethodBase {
 public:
  explicit ResetMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
