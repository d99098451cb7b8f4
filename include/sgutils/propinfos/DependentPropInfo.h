// The public face `X` of a generated property triple. It holds nothing: every
// value operation goes to `X_I`. A public write first turns the mode manual
// (setModeManual, called by the custom set path: `XMode` is written manual as
// the public client, so its listeners hear it; straight to the mode when
// nothing observes it), then passes the value on through the web check.
// `X_I` and `XMode` are found by name on first use and kept.
#pragma once

#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/propinfos/DirectFaceSet.h"
#include "sgutils/propinfos/FactoryDefaultInitializers.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "sgutils/propinfos/WebPropertyChecks.h"
#include "sgdatatypes/Enumeration.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/FaultInjection.h"
#include "vcos/PropertyRouteEpoch.h"

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
    detail::setModeManualPublic(instance, mode());
  }

  // A public client's set of this face, as the typed setter of the block
  // `block` of the instance makes it: the client path's own steps without
  // its trips when nothing observes the set (DirectFaceSet.h), else the
  // client path. `ModePI` and `InternalPI` are the classes of `XMode` and
  // `X_I`.
  template <class ModePI, class InternalPI>
  void setPublicValueIn(Class& block, COSInterface* instance, COSValue value) {
    switch (courseFor(instance)) {
      case detail::FaceSetCourse::ModeThenValue:
        // The mode was found unobserved too: both are written as their
        // client paths would write them, one fault point each.
        vcos::fault::at(vcos::fault::Point::PropertySet);
        vcos::fault::at(vcos::fault::Point::PropertySet);
        static_cast<ModePI*>(mode())->setManualIn(block, instance);
        checkWebPropertySet(instance, getName(), value);
        static_cast<InternalPI*>(internal())->setIn(block, instance, value);
        return;
      case detail::FaceSetCourse::Plain:
        vcos::fault::at(vcos::fault::Point::PropertySet);
        setValue(instance, value);
        return;
      case detail::FaceSetCourse::ClientPath:
        break;
    }
    instance->setPropertyValue(COSGetPublicClient(), this, value);
  }

  // The same for a set by name, which holds neither the block nor the
  // classes of the other two faces.
  void setAsPublicClient(COSInterface* instance, COSValue value) override {
    Class* block = blockOf<Class>(instance, getClassID());
    const detail::FaceSetCourse course = block ? courseFor(instance) : detail::FaceSetCourse::ClientPath;
    if (course != detail::FaceSetCourse::ModeThenValue) {
      if (course == detail::FaceSetCourse::Plain) {
        vcos::fault::at(vcos::fault::Point::PropertySet);
        setValue(instance, value);
        return;
      }
      instance->setPropertyValue(COSGetPublicClient(), this, value);
      return;
    }
    vcos::fault::at(vcos::fault::Point::PropertySet);
    vcos::fault::at(vcos::fault::Point::PropertySet);
    static_cast<PropInfoBase*>(mode())->setManualInBlock(*block, instance);
    checkWebPropertySet(instance, getName(), value);
    static_cast<PropInfoBase*>(internal())->setInBlock(*block, instance, value);
  }

 private:
  // The course of a public set of this face on `instance`. What depends on
  // the class (routes, custom sets, access of the face and its mode) is kept
  // for the last class while the property route epoch stays; the object's
  // own listeners are asked each time.
  detail::FaceSetCourse courseFor(COSInterface* instance) const noexcept {
    if (instance->isDestroyed() || instance->hasOwnPropertyListeners()) return detail::FaceSetCourse::ClientPath;
    const COSClass* cls = instance->getClass();
    const std::uint64_t epoch = vcos::propertyRouteEpoch();
    if (cls != courseClass_ || epoch != courseEpoch_) {
      course_ = detail::publicFaceSetCourse(instance, this, mode());
      courseClass_ = cls;
      courseEpoch_ = epoch;
    }
    return course_;
  }

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
  mutable const COSClass* courseClass_ = nullptr;
  mutable std::uint64_t courseEpoch_ = 0;
  mutable detail::FaceSetCourse course_ = detail::FaceSetCourse::ClientPath;
};

}  // namespace sgutils
