// The description of one property. A property is itself an instance of a
// meta property class, so it has data blocks of its own (its attributes).
// getValue and setValue are the direct path: no access check, no listeners.
#pragma once

#include <vector>

#include "vcos/COSDataTypePtr.h"
#include "vcos/COSInterface.h"
#include "vcos/MemberAccess.h"

class ExtendedMemberAccess;
struct vxArray;

class VCOS_API COSPropInfo : public COSInterface {
 public:
  COSPropInfo() noexcept : COSInterface(COSKind::Property) {}

  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  // The class default (borrowed; empty when there is none).
  virtual COSValue getFactoryDefault() const;
  virtual COSDataTypePtr getDataType() const = 0;
  virtual MemberAccess getMemberGetAccess() const;
  virtual const ExtendedMemberAccess* getExtendedGetAccess() const;
  virtual MemberAccess getMemberSetAccess() const;
  virtual const ExtendedMemberAccess* getExtendedSetAccess() const;
  virtual bool isSealed() const;
  virtual bool hasInternalDefault() const;
  virtual bool isInitAllowed() const;
  virtual bool isDefaultAllowed() const;
  virtual bool isResetAllowed() const;
  virtual bool isAbstract() const;
  virtual bool isTransient() const;
  virtual bool isCopyAllowed() const;
  virtual bool isWarnOnCopyError() const;
  virtual bool isListenerGetAllowed() const;
  virtual bool isListenerSetAllowed() const;
  virtual bool isInspectAllowed() const;
  virtual bool isAbortSet() const;
  virtual bool isVisible() const;
  virtual bool isNeverAmbiguous() const;
  virtual int getPartialMatchPriority() const;
  virtual bool isStatic() const;
  virtual bool isDependent() const;
  virtual bool isGrandfathered() const;
  virtual bool isWeakReference() const;
  // The value belongs to the caller: give it back with releaseValue.
  virtual COSValue getValue(COSInterface* object) const = 0;
  // The value is borrowed; the property stores a copy if it keeps it.
  virtual void setValue(COSInterface* object, COSValue value) = 0;
  virtual void releaseValue(COSInterface* object, COSValue value) const;
  // A public client's set of this property on `object`, a live instance of
  // a class that has it: the client path (setPropertyValue). A property that
  // knows a shorter course with the same effect (listeners, access, custom
  // set paths all as the client path treats them) may take it.
  virtual void setAsPublicClient(COSInterface* object, COSValue value);
  virtual bool canContainInterfaces() const;
  virtual bool isDestructible() const;
  virtual void getInterfaces(const COSClient* client, COSInterface* instance, std::vector<COSInterfacePtr>& out) const;
  virtual void getVLArrays(const COSClient* client, COSInterface* instance, std::vector<vxArray*>& out) const;

  // The interned name and the defining class, set when the property is added.
  COSID getID() const noexcept { return id_; }
  COSClass* getDefiningClass() const noexcept { return definingClass_; }

 private:
  friend class COSClass;
  friend class vcos::internal::ObjectOps;
  COSID id_;
  COSClass* definingClass_ = nullptr;
};
