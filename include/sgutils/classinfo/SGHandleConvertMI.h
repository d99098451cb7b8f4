// convertObject(cls, value): numbers that all name objects become an array of
// graphics objects, an empty number an empty one; anything else raises
// "VANTEL:legacy_two_part:invalidConversion".
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGHandleConvertMI : public COSMethodBase {
 public:
  explicit SGHandleConvertMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
