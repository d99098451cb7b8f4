// The base of every property description of the library: a name, an
// interned id, a data type, get and set access, a flag word of attribute
// bits and a description, plus a factory-value provider. The class system
// owns each instance once it has been added to a class.
#pragma once

#include <boost/function.hpp>
#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"

class SGReference;

namespace sgutils {

class DefaultProvider;
}  // namespace sgutils

class SGReference;

namespace sgutils {

// Bits of the flag word. Generated code writes the word as one decimal.
enum PropInfoFlag : unsigned {
  kPropAbstract = 1u << 0,
  kPropInitAllowed = 1u << 1,
  kPropDefaultAllowed = 1u << 2,
  kPropResetAllowed = 1u << 3,
  kPropSealed = 1u << 4,
  kPropTransient = 1u << 5,
  kPropCopyAllowed = 1u << 6,
  kPropListenerGetAllowed = 1u << 7,
  kPropListenerSetAllowed = 1u << 8,
  kPropInspectAllowed = 1u << 9,
  kPropAbortSet = 1u << 10,
  kPropVisible = 1u << 11,
  kPropStatic = 1u << 12,
  kPropDependent = 1u << 13,
  // Inverted: set means "holds no interfaces" without asking the type.
  kPropNoInterfaces = 1u << 14,
};

class SGUTILS_API PropInfoBase : public COSPropInfo, private boost::noncopyable {
 public:
  ~PropInfoBase() override;

  const char* getName() const override { return name_; }
  const char* getDescription() const override { return description_; }
  const char* getDetailedDescription() const override { return nullptr; }
  COSValue getFactoryDefault() const override = 0;
  COSDataTypePtr getDataType() const override { return dataType_; }
  MemberAccess getMemberGetAccess() const override { return getAccess_; }
  MemberAccess getMemberSetAccess() const override { return setAccess_; }
  bool isSealed() const override { return flag(kPropSealed); }
  bool hasInternalDefault() const override { return isDefaultAllowed(); }
  bool isInitAllowed() const override { return flag(kPropInitAllowed); }
  bool isDefaultAllowed() const override {
    return getMemberSetAccess() != ProtectedAccess && flag(kPropDefaultAllowed);
  }
  bool isResetAllowed() const override { return flag(kPropResetAllowed); }
  bool isAbstract() const override { return flag(kPropAbstract); }
  bool isTransient() const override { return flag(kPropTransient); }
  bool isCopyAllowed() const override { return flag(kPropCopyAllowed); }
  bool isListenerGetAllowed() const override { return flag(kPropListenerGetAllowed); }
  bool isListenerSetAllowed() const override { return flag(kPropListenerSetAllowed); }
  bool isInspectAllowed() const override { return flag(kPropInspectAllowed); }
  // Honoured only while the process-wide AbortSet switch is on.
  bool isAbortSet() const override;
  bool isVisible() const override { return flag(kPropVisible); }
  bool isStatic() const override { return flag(kPropStatic); }
  bool isDependent() const override { return flag(kPropDependent); }
  bool isGrandfathered() const override { return false; }
  bool canContainInterfaces() const override;
  bool isDestructible() const override { return true; }

  COSID getPropID() const noexcept { return propID_; }
  // The class whose data block holds the value.
  COSID getClassID() const noexcept { return classID_; }
  // Turns the mode of the property's triple manual; the custom set path
  // calls this before a public write lands. Faces without a mode do nothing.
  virtual void setModeManual(COSInterface* instance) = 0;
  // setValue on `block`, the instance's data block of getClassID(), for a
  // caller that holds it.
  virtual void setInBlock(SGReference&, COSInterface* instance, COSValue value) { setValue(instance, value); }
  // A public face's write of "manual" into the block of its mode face (this
  // one); a mode face answers a mode that is manual already without a write.
  virtual void setManualInBlock(SGReference& block, COSInterface* instance);
  virtual void setResetAllowed(bool allowed);
  virtual bool isExternal() const { return false; }
  virtual bool isDeepCopy() const { return false; }
  // The copy's path for a face whose value lives in its class's block (the
  // block of getClassID()): `from` is the source's block, `to` the target's.
  // Sets the source's value on the target as setValue would, unless the
  // target holds an equal value already (compared by the type); nothing is
  // handed out and no block is looked up. Only faces that answer
  // copiesBetweenBlocks() implement it.
  virtual bool copiesBetweenBlocks() const noexcept { return false; }
  virtual void copyBetweenBlocks(COSInterface*, const SGReference*, SGReference*, COSInterface*) {}

  unsigned getFlags() const noexcept { return flags_; }
  // Replaces the factory-value provider by one that calls `fcn`.
  void setUserGetDefaultFcn(const boost::function<COSValue()>& fcn);
  const boost::shared_ptr<DefaultProvider>& getDefaultProvider() const noexcept { return defaultProvider_; }

 protected:
  PropInfoBase(COSID classId, const char* name, COSDataTypePtr dataType, MemberAccess getAccess,
               MemberAccess setAccess, unsigned flags, const char* description);

  bool flag(unsigned bit) const noexcept { return (flags_ & bit) != 0; }
  // The declared type without a counted copy, for the set and get paths.
  const COSDataType* type() const noexcept { return dataType_.get(); }
  void setDefaultProvider(boost::shared_ptr<DefaultProvider> provider);

 private:
  const char* name_;
  COSID propID_;
  COSID classID_;
  COSDataTypePtr dataType_;
  MemberAccess getAccess_;
  MemberAccess setAccess_;
  unsigned flags_;
  const char* description_;
  boost::shared_ptr<DefaultProvider> defaultProvider_;
};

}  // namespace sgutils
