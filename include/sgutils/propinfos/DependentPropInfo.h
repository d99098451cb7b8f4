// The public face `X` of a generated property triple. It holds nothing: every
// value operation goes to `X_I`, found by name on the first use and kept. A
// public write first turns the mode manual (setModeManual, called by the
// custom set path), then passes the value on through the web check.
//
// `PI` gives:
//   static void setModeManual(Class&);   writes XMode manual as the public client
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "vcos/COSClass.h"

namespace sgutils {

template <class Class, class PI>
class DependentPropInfo : public PropInfoBase, public DependentPropertyFactoryDefaultInitializer<Class, PI> {
 public:
  DependentPropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
                    MemberAccess setAccess, unsigned flags, const char* description, COSID internalName)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description),
        internalName_(internalName) {}

  COSValue getFactoryDefault() const override { return internal()->getFactoryDefault(); }
  COSValue getValue(COSInterface* instance) const override { return internal()->getValue(instance); }

  void setValue(COSInterface* instance, COSValue value) override {
    checkWebPropertySet(instance, getName(), value);
    if (!blockOf<Class>(instance, getClassID())) return;
    internal()->setValue(instance, value);
  }

  void releaseValue(COSInterface* instance, COSValue value) const override {
    internal()->releaseValue(instance, value);
  }

  void setModeManual(COSInterface* instance) override {
    if (Class* block = blockOf<Class>(instance, getClassID())) PI::setModeManual(*block);
  }

 private:
  COSPropInfo* internal() const {
    if (!resolved_) {
      COSClass* cls = getDefiningClass();
      internal_ = cls ? cls->findPropertyExact(internalName_) : nullptr;
      assert(internal_ && "a public face needs its internal face on the same class");
      resolved_ = internal_ != nullptr;
    }
    return internal_;
  }

  COSID internalName_;
  mutable COSPropInfo* internal_ = nullptr;
  mutable bool resolved_ = false;
};

}  // namespace sgutils
