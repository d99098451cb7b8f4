// A property built from data: class id, property id, data type, optional
// default, get and set access, a flag word (COSPropFlags) and a description.
// Its values live in the instance's generic store; a property that keeps its
// value elsewhere overrides getValue and setValue (see COSPropCPPT).
#pragma once

#include <memory>
#include <string>

#include "vcos/COSPropFlags.h"
#include "vcos/COSPropInfo.h"

class VCOS_API COSPropT : public COSPropInfo {
 public:
  COSPropT(COSID classId, COSID propertyId, COSDataTypePtr type, COSValue defaultValue = COSValue(),
           MemberAccess getAccess = PublicAccess, MemberAccess setAccess = PublicAccess,
           unsigned flags = COSPropDefaultFlags, const char* description = "");
  ~COSPropT() override;

  const char* getName() const override;
  const char* getDescription() const override;
  COSValue getFactoryDefault() const override;
  COSDataTypePtr getDataType() const override;
  MemberAccess getMemberGetAccess() const override;
  const ExtendedMemberAccess* getExtendedGetAccess() const override;
  MemberAccess getMemberSetAccess() const override;
  const ExtendedMemberAccess* getExtendedSetAccess() const override;
  bool isSealed() const override;
  bool hasInternalDefault() const override;
  bool isInitAllowed() const override;
  bool isDefaultAllowed() const override;
  bool isResetAllowed() const override;
  bool isAbstract() const override;
  bool isTransient() const override;
  bool isCopyAllowed() const override;
  bool isWarnOnCopyError() const override;
  bool isListenerGetAllowed() const override;
  bool isListenerSetAllowed() const override;
  bool isInspectAllowed() const override;
  bool isAbortSet() const override;
  bool isVisible() const override;
  bool isNeverAmbiguous() const override;
  bool isStatic() const override;
  bool isDependent() const override;
  bool isGrandfathered() const override;
  bool isWeakReference() const override;
  bool canContainInterfaces() const override;
  COSValue getValue(COSInterface* object) const override;
  void setValue(COSInterface* object, COSValue value) override;

  COSID getClassID() const noexcept { return classId_; }
  unsigned getFlags() const noexcept { return flags_; }
  void setFlags(unsigned flags) noexcept { flags_ = flags; }
  // Replaces the plain access by an access list.
  void setExtendedGetAccess(const ExtendedMemberAccess& access);
  void setExtendedSetAccess(const ExtendedMemberAccess& access);

 protected:
  bool flag(unsigned bit) const noexcept { return (flags_ & bit) != 0; }

 private:
  COSID classId_;
  COSID propertyId_;
  COSDataTypePtr type_;
  COSValue default_;
  MemberAccess getAccess_;
  MemberAccess setAccess_;
  unsigned flags_;
  std::string description_;
  std::unique_ptr<ExtendedMemberAccess> extGet_;
  std::unique_ptr<ExtendedMemberAccess> extSet_;
};
