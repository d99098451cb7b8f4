// clo(object, keep, doReset): deletes the children of element 0 except the
// objects of `keep`; with `doReset` true the hidden children go too and the
// object is reset afterwards. No outputs.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGCloMI : public COSMethodBase {
 public:
  explicit SGCloMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
