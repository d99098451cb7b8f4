// getFactoryPropValue(object, name): a factory value by name; "factory" or
// "Factory" alone is the whole list, which only the root holds
// ("VANTEL:sgutils:OnlyRootHasFactoryDefaults"). An empty name raises
// "VANTEL:sg:InvalidProperty".
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/classinfo/SGDefaultFactoryPropHandlerBaseMI.h"

class SGUTILS_API SGGetFactoryPropValueMI : public SGDefaultFactoryPropHandlerBaseMI {
 public:
  explicit SGGetFactoryPropValueMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
