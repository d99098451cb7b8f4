// getDefaultPropValue(object, name): a default read by name on element 0 of
// the objects; "default" or "Default" alone is the whole store. Sends a
// usage record.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGGetDefaultPropValueMI : public COSMethodBase {
 public:
  explicit SGGetDefaultPropValueMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
