// The step between a property's value and a file that the serializable twin
// of a property takes: the value goes through an array, where old-style
// handles are removed (UDDConverter). The conversions between the property's
// type and arrays are looked up on first use.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSValue.h"
#include "vx/vxTypes.h"

class COSDataType;
class COSTypeConversion;

namespace sgutils {

class SGUTILS_API SerializableConversion {
 public:
  // The value as it goes into a file. Either `value` itself, when nothing had
  // to change, or a new value of `type` that the caller frees with
  // type.destroy.
  COSValue forSave(const COSDataType& type, COSValue value) const;
  // The value as it comes from a file, in the same way.
  COSValue fromFile(const COSDataType& type, COSValue value) const;

 private:
  using Walk = vxArray* (*)(vxArray*);
  COSValue through(const COSDataType& type, COSValue value, Walk walk) const;
  // Between `type` and arrays; raises "VANTEL:vcos:ConversionFailed" when
  // the type has none.
  const COSTypeConversion& toArray(const COSDataType& type) const;
  const COSTypeConversion& fromArray(const COSDataType& type) const;

  mutable const COSTypeConversion* toArray_ = nullptr;
  mutable const COSTypeConversion* fromArray_ = nullptr;
};

}  // namespace sgutils
