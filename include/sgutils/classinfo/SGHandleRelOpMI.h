// The base of eq and ne on graphics objects: numbers among the inputs
// become objects (a number that names nothing becomes a placeholder, which
// equals no object), and the comparison of class "handle" of the same name
// answers.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGHandleRelOpMI : public COSMethodBase {
 public:
  SGHandleRelOpMI(COSID classId, const char* name, const char* description);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
