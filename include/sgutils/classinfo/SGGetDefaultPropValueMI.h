// getDefaultPropValue(object, name): a default read by name on element 0 of
// the objects; "default" or "Default" alone is the whole store. Sends a
// usage record.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/classinfo/SGDefaultFactoryPropHandlerBaseMI.h"

class SGUTILS_API SGGetDefaultPropValueMI : public SGDefaultFactoryPropHandlerBaseMI {
 public:
  explicit SGGetDefaultPropValueMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
