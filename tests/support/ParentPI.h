// "Parent" for test classes: an object array of the owner, or an empty
// double; setting an object hooks the object below it, setting an empty
// value unhooks it. Not reset: a reset leaves the object where it is.
#pragma once

#include "foundation/core/except/Error.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest {

class ParentPI final : public COSPropT {
 public:
  explicit ParentPI(COSID cls)
      : COSPropT(cls, COSID("Parent"), COSDataTypePtr("any"), COSValue(), PublicAccess, PublicAccess,
                 COSPropDefaultFlags & ~unsigned(COSPropResetAllowed)) {}
  COSValue getValue(COSInterface* object) const override {
    COSInterface* owner = object->getOwnerObject();
    return COSValue(owner ? omCreateVCOSScalar(COSInterfacePtr(owner)) : vxCreateDoubleMatrix(0, 0, vxREAL));
  }
  void setValue(COSInterface* object, COSValue value) override {
    const vxArray* a = value.asPointer<const vxArray>();
    if (!a || vxIsEmpty(a)) {
      object->unhookFromOwner();
      return;
    }
    if (!omIsVCOS(a)) throw foundation::core::except::Error("VANTEL:vcos:ConversionFailed", "any", "Parent");
    COSInterfacePtr parent = omGetLiveArrayElement(a, 0);
    object->unhookFromOwner();
    parent->hookChild(object);
  }
};

}  // namespace sgtest
