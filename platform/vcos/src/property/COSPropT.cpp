// Properties built from data, with their values in the instance's generic
// store, and the run-time (dynamic) properties.
#include "vcos/COSPropT.h"

#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ExtendedMemberAccess.h"
#include "vcos/PropertyRouteEpoch.h"

using vcos::internal::ObjectOps;

COSPropT::COSPropT(COSID classId, COSID propertyId, COSDataTypePtr type, COSValue defaultValue, MemberAccess getAccess,
                   MemberAccess setAccess, unsigned flags, const char* description)
    : classId_(classId),
      propertyId_(propertyId),
      type_(std::move(type)),
      default_(type_ ? type_->copyInternal(defaultValue) : defaultValue),
      getAccess_(getAccess),
      setAccess_(setAccess),
      flags_(flags),
      description_(description ? description : "") {
  assert(type_ && "a property needs a data type");
}

COSPropT::~COSPropT() {
  if (type_) type_->destroyInternal(default_);
}

const char* COSPropT::getName() const { return propertyId_.c_str(); }
const char* COSPropT::getDescription() const { return description_.c_str(); }
COSValue COSPropT::getFactoryDefault() const { return default_; }
COSDataTypePtr COSPropT::getDataType() const { return type_; }
MemberAccess COSPropT::getMemberGetAccess() const { return getAccess_; }
const ExtendedMemberAccess* COSPropT::getExtendedGetAccess() const { return extGet_.get(); }
MemberAccess COSPropT::getMemberSetAccess() const { return setAccess_; }
const ExtendedMemberAccess* COSPropT::getExtendedSetAccess() const { return extSet_.get(); }
bool COSPropT::isSealed() const { return flag(COSPropSealed); }
bool COSPropT::hasInternalDefault() const { return flag(COSPropInternalDefault); }
bool COSPropT::isInitAllowed() const { return flag(COSPropInitAllowed); }
bool COSPropT::isDefaultAllowed() const { return flag(COSPropDefaultAllowed); }
bool COSPropT::isResetAllowed() const { return flag(COSPropResetAllowed); }
bool COSPropT::isAbstract() const { return flag(COSPropAbstract); }
bool COSPropT::isTransient() const { return flag(COSPropTransient); }
bool COSPropT::isCopyAllowed() const { return flag(COSPropCopyAllowed); }
bool COSPropT::isWarnOnCopyError() const { return flag(COSPropWarnOnCopyError); }
bool COSPropT::isListenerGetAllowed() const { return flag(COSPropListenerGetAllowed); }
bool COSPropT::isListenerSetAllowed() const { return flag(COSPropListenerSetAllowed); }
bool COSPropT::isInspectAllowed() const { return flag(COSPropInspectAllowed); }
bool COSPropT::isAbortSet() const { return flag(COSPropAbortSet); }
bool COSPropT::isVisible() const { return flag(COSPropVisible); }
bool COSPropT::isNeverAmbiguous() const { return flag(COSPropNeverAmbiguous); }
bool COSPropT::isStatic() const { return flag(COSPropStatic); }
bool COSPropT::isDependent() const { return flag(COSPropDependent); }
bool COSPropT::isGrandfathered() const { return flag(COSPropGrandfathered); }
bool COSPropT::isWeakReference() const { return flag(COSPropWeakReference); }
bool COSPropT::canContainInterfaces() const { return !flag(COSPropNoInterfaces) && COSPropInfo::canContainInterfaces(); }

// Access decides the course of gets and sets, which callers may keep.
void COSPropT::setExtendedGetAccess(const ExtendedMemberAccess& access) {
  extGet_ = std::make_unique<ExtendedMemberAccess>(access);
  vcos::bumpPropertyRouteEpoch();
}
void COSPropT::setExtendedSetAccess(const ExtendedMemberAccess& access) {
  extSet_ = std::make_unique<ExtendedMemberAccess>(access);
  vcos::bumpPropertyRouteEpoch();
}

COSValue COSPropT::getValue(COSInterface* object) const {
  const COSValue* stored = ObjectOps::storedValue(object, this);
  return type_->copy(stored ? *stored : default_);
}

void COSPropT::setValue(COSInterface* object, COSValue value) {
  type_->checkValue(value, /*raise=*/true);
  ObjectOps::storeValue(object, this, value);
}

COSGenericProp* COSGenericProp::createNewDynamicProp(const COSString& name, COSID classId, COSID typeId) {
  COSDataTypePtr type = COSTypeRepository::getType(typeId);
  if (!type) throw foundation::core::except::Error(vcos::msg::UnknownType, typeId.str());
  return new COSGenericProp(classId, COSID(name), type, COSValue(), PublicAccess, PublicAccess,
                            COSPropDefaultFlags, "");
}

void COSGenericProp::setResetAllowed(bool allowed) noexcept {
  setFlags(allowed ? getFlags() | COSPropResetAllowed : getFlags() & ~unsigned(COSPropResetAllowed));
}
void COSGenericProp::setTransient(bool transient) noexcept {
  setFlags(transient ? getFlags() | COSPropTransient : getFlags() & ~unsigned(COSPropTransient));
}
void COSGenericProp::setVisible(bool visible) noexcept {
  setFlags(visible ? getFlags() | COSPropVisible : getFlags() & ~unsigned(COSPropVisible));
}
void COSGenericProp::setAccess(MemberAccess getAccess, MemberAccess setAccess) noexcept {
  overrideGet_ = getAccess;
  overrideSet_ = setAccess;
  accessOverridden_ = true;
}
MemberAccess COSGenericProp::getMemberGetAccess() const {
  return accessOverridden_ ? overrideGet_ : COSPropT::getMemberGetAccess();
}
MemberAccess COSGenericProp::getMemberSetAccess() const {
  return accessOverridden_ ? overrideSet_ : COSPropT::getMemberSetAccess();
}
