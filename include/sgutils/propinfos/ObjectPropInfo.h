// A read-only handle held by event data (the parent and child of a child
// event, the primitive of a hit): set from a one-element object array, read
// back as one. An object that is being destroyed is refused.
//
// `PI` gives:
//   static COSInterfacePtr& handle(Class&);
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgutils {

namespace detail {
// Raises "VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle".
[[noreturn]] SGUTILS_API void raiseBadHandle();
}  // namespace detail

template <class Class, class PI>
class ObjectPropInfo : public PropInfoBase {
 public:
  ObjectPropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
                 MemberAccess setAccess, unsigned flags, const char* description)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description) {}

  COSValue getFactoryDefault() const override { return COSValue(); }

  // A new array owned by the caller: the object, or an empty array.
  COSValue getValue(COSInterface* instance) const override {
    Class* block = blockOf<Class>(instance, getClassID());
    const COSInterfacePtr* h = block ? &PI::handle(*block) : nullptr;
    if (h && *h) return COSValue(omCreateVCOSScalar(*h));
    return COSValue(vxCreateDoubleMatrix(0, 0, vxREAL));
  }

  void setValue(COSInterface* instance, COSValue value) override {
    Class* block = blockOf<Class>(instance, getClassID());
    if (!block) return;
    const auto* a = value.asPointer<const vxArray>();
    COSInterfacePtr object;
    if (a && omIsVCOS(a) && vxGetNumberOfElements(a) == 1) object = omGetArrayElement(a, 0);
    if (object && object->isBeingDestroyed()) detail::raiseBadHandle();
    PI::handle(*block) = std::move(object);
  }

  void releaseValue(COSInterface*, COSValue value) const override {
    if (auto* a = value.asPointer<vxArray>()) vxDestroyArray(a);
  }
  void setModeManual(COSInterface*) override {}
};

}  // namespace sgutils
