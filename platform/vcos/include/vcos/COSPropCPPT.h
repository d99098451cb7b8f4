// A property whose value lives in a C++ data block: a getter and a setter
// member of `Owner`, the block of the property's class in each instance.
// The word mapping of T is COSValueTraits<T>.
#pragma once

#include <utility>

#include "vcos/COSPropT.h"
#include "vcos/COSValueTraits.h"

namespace vcos::internal {
// Raises "VANTEL:vcos:NoInstanceData" for an object without the block.
[[noreturn]] VCOS_API void raiseNoInstanceData(const COSPropInfo* property);
}  // namespace vcos::internal

template <class Owner, class T>
class COSPropCPPT : public COSPropT {
 public:
  using Getter = T (Owner::*)() const;
  using Setter = void (Owner::*)(T);

  COSPropCPPT(COSID classId, COSID propertyId, COSDataTypePtr type, Getter getter, Setter setter,
              MemberAccess getAccess = PublicAccess, MemberAccess setAccess = PublicAccess,
              unsigned flags = COSPropDefaultFlags, const char* description = "")
      : COSPropT(classId, propertyId, std::move(type), COSValue(), getAccess, setAccess, flags, description),
        getter_(getter),
        setter_(setter) {}

  COSValue getValue(COSInterface* object) const override {
    return COSValueTraits<T>::toValue((owner(object)->*getter_)());
  }
  void setValue(COSInterface* object, COSValue value) override {
    if (!setter_) vcos::internal::raiseNoInstanceData(this);
    (owner(object)->*setter_)(COSValueTraits<T>::fromValue(value));
  }

 private:
  Owner* owner(COSInterface* object) const {
    auto* block = static_cast<Owner*>(object->getInstanceData(getClassID()));
    if (!block) vcos::internal::raiseNoInstanceData(this);
    return block;
  }

  Getter getter_;
  Setter setter_;
};
