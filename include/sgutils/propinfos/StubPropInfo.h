// A generated property whose value the class computes by hand: get and set go
// to the class's getXImpl and setXImpl (through `PI`), the set with the public
// client. The factory value is computed and cached as for an internal face.
//
// `PI` gives:
//   static COSValue getImpl(Class&, COSPropInfo*, const COSClient*, COSInterface*);
//   static void setImpl(Class&, COSPropInfo*, const COSClient*, COSInterface*, COSValue);
//   static COSValue makeFactoryValue(const COSDataType&);
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/LazyFactoryValue.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"

namespace sgutils {

// The only property kind of the stubs: values that are not objects.
struct NonObjectPropType {};

template <class Class, class PI, class PropType = NonObjectPropType>
class StubPropInfo : public PropInfoBase, public InternalPropertyFactoryDefaultInitializer<Class, PI> {
 public:
  StubPropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
               MemberAccess setAccess, unsigned flags, const char* description)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description) {}
  COSValue getFactoryDefault() const override {
    return factory_.get(type(), [](const COSDataType& t) { return PI::makeFactoryValue(t); });
  }
  COSValue getValue(COSInterface* instance) const override {
    Class* block = blockOf<Class>(instance, getClassID());
    return block ? PI::getImpl(*block, const_cast<StubPropInfo*>(this), COSGetPublicClient(), instance) : COSValue();
  }
  void setValue(COSInterface* instance, COSValue value) override {
    if (Class* block = blockOf<Class>(instance, getClassID()))
      PI::setImpl(*block, this, COSGetPublicClient(), instance, value);
  }
  void releaseValue(COSInterface*, COSValue value) const override {
    if (type()) type()->destroy(value);
  }
  void setModeManual(COSInterface*) override {}

 private:
  LazyFactoryValue factory_;
};

}  // namespace sgutils
