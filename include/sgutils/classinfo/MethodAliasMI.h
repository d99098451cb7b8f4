// A second name of a method: calling the alias calls the method of the
// target name on the class of the first input (so a subclass's override
// runs), with the same inputs and outputs. The target is looked up at each
// call, so the alias may be added before its target.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API MethodAliasMI : public COSMethodBase {
 public:
  MethodAliasMI(COSID classId, const char* alias, const char* target);
  const char* getTargetName() const noexcept { return target_.c_str(); }
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;

 private:
  COSID target_;
};
