// The load step that the graphics metaclass adds to every class it makes,
// shared by "loadobj" and "finalizeIncomingObject". It takes the object the
// serializer restored (or makes one from a struct of property values), calls
// the class's "doloadobj" when it has one, and then the object's sgLoadObj,
// which runs the pass after load (CreateFcn, defaults of loaded children).
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSMethodBase.h"

class SGUTILS_API loadobjBaseMI : public COSMethodBase {
 public:
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override;
  bool isStatic() const override { return true; }
  bool isVisible() const override { return visible_; }
  const std::string& getOwningClassName() const noexcept { return className_; }

 protected:
  loadobjBaseMI(COSID classId, const char* name, const char* description, bool visible,
                COSMethodSignaturePtr signature);

 private:
  std::string className_;
  bool visible_;
};
