// double of graphics objects: the number of each object, kept in its block
// after the first request so that the number stays the same; -1 for a deleted
// object.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API SGDoubleHandleMI : public COSMethodBase {
 public:
  explicit SGDoubleHandleMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
