// The base of getdisp and setdisp: the method calls the interpreter's
// function "sg" + its own name with its inputs and outputs as they are.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGSetGetDispBaseMI : public COSMethodBase {
 public:
  SGSetGetDispBaseMI(COSID classId, const char* name);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
