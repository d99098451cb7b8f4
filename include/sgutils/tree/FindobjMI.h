// The method "findobj" of graphics objects: the platform's findobj of class
// "handle", with 'flat' as the second input meaning "-depth 0", and an
// empty placeholder array for an empty input or an empty result.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

namespace sgutils {

class SGUTILS_API FindobjMI : public COSMethodBase {
 public:
  explicit FindobjMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};

}  // namespace sgutils
