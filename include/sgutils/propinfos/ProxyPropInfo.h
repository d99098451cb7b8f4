// A property that shows another class's property unchanged. Value
// operations first pass the instance through the instance map, so the value
// may live on another object.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSSpecializedInterfacePtr.h"

namespace sgutils {

using InstanceMap = COSInterfacePtr (*)(COSInterfacePtr);
using WrappedPropInfoPtr = COSSpecializedInterfacePtr<COSPropInfo, COSPropInfoPtrHelper>;

class SGUTILS_API ProxyPropInfo : public COSPropInfo {
 public:
  // Raises NullPropInfoException for a null property or map.
  ProxyPropInfo(WrappedPropInfoPtr wrapped, InstanceMap map);
  ~ProxyPropInfo() override;

  const char* getName() const override { return wrapped_->getName(); }
  const char* getDescription() const override { return wrapped_->getDescription(); }
  const char* getDetailedDescription() const override { return wrapped_->getDetailedDescription(); }
  COSValue getFactoryDefault() const override { return wrapped_->getFactoryDefault(); }
  COSDataTypePtr getDataType() const override { return wrapped_->getDataType(); }
  MemberAccess getMemberGetAccess() const override { return wrapped_->getMemberGetAccess(); }
  const ExtendedMemberAccess* getExtendedGetAccess() const override { return wrapped_->getExtendedGetAccess(); }
  MemberAccess getMemberSetAccess() const override { return wrapped_->getMemberSetAccess(); }
  const ExtendedMemberAccess* getExtendedSetAccess() const override { return wrapped_->getExtendedSetAccess(); }
  bool isSealed() const override { return wrapped_->isSealed(); }
  bool hasInternalDefault() const override { return wrapped_->hasInternalDefault(); }
  bool isInitAllowed() const override { return wrapped_->isInitAllowed(); }
  bool isDefaultAllowed() const override { return wrapped_->isDefaultAllowed(); }
  bool isResetAllowed() const override { return wrapped_->isResetAllowed(); }
  bool isAbstract() const override { return wrapped_->isAbstract(); }
  bool isTransient() const override { return wrapped_->isTransient(); }
  bool isCopyAllowed() const override { return wrapped_->isCopyAllowed(); }
  bool isWarnOnCopyError() const override { return wrapped_->isWarnOnCopyError(); }
  bool isListenerGetAllowed() const override { return wrapped_->isListenerGetAllowed(); }
  bool isListenerSetAllowed() const override { return wrapped_->isListenerSetAllowed(); }
  bool isInspectAllowed() const override { return wrapped_->isInspectAllowed(); }
  bool isAbortSet() const override { return wrapped_->isAbortSet(); }
  bool isVisible() const override { return wrapped_->isVisible(); }
  bool isNeverAmbiguous() const override { return wrapped_->isNeverAmbiguous(); }
  int getPartialMatchPriority() const override { return wrapped_->getPartialMatchPriority(); }
  bool isStatic() const override { return wrapped_->isStatic(); }
  bool isDependent() const override { return wrapped_->isDependent(); }
  bool isGrandfathered() const override { return wrapped_->isGrandfathered(); }
  bool isWeakReference() const override { return wrapped_->isWeakReference(); }
  bool canContainInterfaces() const override { return wrapped_->canContainInterfaces(); }
  bool isDestructible() const override { return wrapped_->isDestructible(); }

  COSValue getValue(COSInterface* object) const override;
  void setValue(COSInterface* object, COSValue value) override;
  void releaseValue(COSInterface* object, COSValue value) const override;
  void getInterfaces(const COSClient* client, COSInterface* instance, std::vector<COSInterfacePtr>& out) const override;
  void getVLArrays(const COSClient* client, COSInterface* instance, std::vector<vxArray*>& out) const override;

  COSPropInfo* getWrapped() const noexcept { return wrapped_.get(); }

 protected:
  COSInterfacePtr mapped(COSInterface* object) const;

 private:
  WrappedPropInfoPtr wrapped_;
  InstanceMap map_;
};

}  // namespace sgutils
