// Not installed. The type of a method input that takes an object array of a
// class and its subclasses. It names the class and looks nothing up when
// made, so a class can type the inputs of its own methods, or name a
// subclass, while the class system is still building it.
#pragma once

#include "vcos/COSDataType.h"
#include "vx/vxQuery.h"

namespace sgutils::copy {

class ObjectArgumentType final : public COSDataType {
 public:
  explicit ObjectArgumentType(COSID className) : COSDataType(className), className_(className) {}
  bool checkValue(COSValue value, bool raise) const override;
  bool isVANTELArrayType() const override { return true; }

 private:
  COSID className_;
};

}  // namespace sgutils::copy
