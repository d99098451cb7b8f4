// The static method getDefaultScalarElement: a new GraphicsPlaceholder as a
// 1-by-1 array, the element that fills gaps in arrays of graphics objects.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API GetGraphicsPlaceholderMI : public COSMethodBase {
 public:
  explicit GetGraphicsPlaceholderMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
