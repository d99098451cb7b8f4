// The method "addlistener" of graphics objects: the method of class "handle"
// works on one source, this one on a graphics array. It picks the form by
// its inputs (source, event, callback; or source, properties as text, a cell
// of texts or property objects, property event, callback), checks the
// arguments once for all elements, calls the base method once per element
// with that element alone, and gathers the listeners into one column. A call
// whose check fails goes to the base method whole, which reports the error
// in its own words; this method raises nothing of its own.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API AddListenerBaseMI : public COSMethodBase {
 public:
  explicit AddListenerBaseMI(COSID classId);
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
};
