// The mode and internal faces that belong to a property name on one object:
// `<name>Mode` counts only when it is publicly readable and of type
// AutoManual, `<name>_I` only when it is publicly writable. Writes go through
// the client path as the public client.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSSpecializedInterfacePtr.h"
#include "sgdatatypes/AutoManual.h"

class COSPropInfo;
struct vxArray;

namespace sgutils {

using AutoManual = graphics::datatype::AutoManual;
using COSPropInfoPtr = COSSpecializedInterfacePtr<COSPropInfo, COSPropInfoPtrHelper>;

class SGUTILS_API RelatedProperties {
 public:
  RelatedProperties(COSInterfacePtr object, const std::string& name);

  bool hasMode() const noexcept { return !mode_.isNull(); }
  bool hasInternal() const noexcept { return !internal_.isNull(); }
  COSPropInfo* modeProperty() const noexcept { return mode_.get(); }
  COSPropInfo* internalProperty() const noexcept { return internal_.get(); }

  // The object's current mode, or null.
  const AutoManual* modeValue() const;
  // True when the write happened.
  bool setMode(AutoManual mode);
  bool setInternal(COSValue value);
  // Converts the array to the property's type first.
  bool setInternal(const vxArray* value);

 private:
  COSInterfacePtr object_;
  COSPropInfoPtr mode_;
  COSPropInfoPtr internal_;
};

}  // namespace sgutils
