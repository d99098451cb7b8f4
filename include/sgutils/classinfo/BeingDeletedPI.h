// The property BeingDeleted: on for an object that is being destroyed or lies
// below one that is. Setting it does nothing. The word is that of a logical
// scalar or of an on/off value, by the type the class gives it.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSPropT.h"

class SGUTILS_API BeingDeletedPI : public COSPropT {
 public:
  BeingDeletedPI(COSID classId, COSDataTypePtr type, unsigned flags);
  COSValue getValue(COSInterface* object) const override;
  void setValue(COSInterface* object, COSValue value) override;
};
