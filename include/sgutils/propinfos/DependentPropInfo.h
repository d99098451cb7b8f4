// The public face `X` of a generated property triple. It holds nothing: every
// value operation goes to `X_I`. A public write first turns the mode manual
// (setModeManual, called by the custom set path: `XMode` is written manual as
// the public client, through the client path, so its listeners hear it), then
// passes the value on through the web check. `X_I` and `XMode` are found by
// name on first use and kept.
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "sgdatatypes/Enumeration.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"

namespace sgutils {

template <class Class, class PI>
class DependentPropInfo : public PropInfoBase, public DependentPropertyFactoryDefaultInitializer<Class, PI> {
 public:
  DependentPropInfo(COSID classId, const char* name, COSDataTypePtr type, MemberAccess getAccess,
                    MemberAccess setAccess, unsigned flags, const char* description, COSID internalName,
                    COSID modeName)
      : PropInfoBase(classId, name, std::move(type), getAccess, setAccess, flags, description),
        internalName_(internalName),
        modeName_(modeName) {}

  COSValue getFactoryDefault() const override { return internal()->getFactoryDefault(); }
  COSValue getValue(COSInterface* instance) const override { return internal()->getValue(instance); }

  // An instance without the block is left alone by `X_I` itself.
  void setValue(COSInterface* instance, COSValue value) override {
    checkWebPropertySet(instance, getName(), value);
    internal()->setValue(instance, value);
  }

  void releaseValue(COSInterface* instance, COSValue value) const override {
    internal()->releaseValue(instance, value);
  }

  void setModeManual(COSInterface* instance) override {
    if (!blockOf<Class>(instance, getClassID())) return;
    instance->setPropertyValue(COSGetPublicClient(), mode(), COSValue(graphics::datatype::canonicalEnumerationByte(1)));
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

  COSPropInfo* mode() const {
    if (!mode_) {
      COSClass* cls = getDefiningClass();
      mode_ = cls ? cls->findPropertyExact(modeName_) : nullptr;
      assert(mode_ && "a public face needs its mode face on the same class");
    }
    return mode_;
  }

  COSID internalName_;
  COSID modeName_;
  mutable COSPropInfo* internal_ = nullptr;
  mutable bool resolved_ = false;
  mutable COSPropInfo* mode_ = nullptr;
};

}  // namespace sgutils
