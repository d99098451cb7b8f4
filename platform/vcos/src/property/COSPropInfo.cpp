// Defaults of the property description: a public, visible, copyable,
// resettable, observable property without a default.
#include "vcos/COSPropInfo.h"

#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropCPPT.h"

const char* COSPropInfo::getDescription() const { return ""; }
const char* COSPropInfo::getDetailedDescription() const { return ""; }
COSValue COSPropInfo::getFactoryDefault() const { return COSValue(); }
MemberAccess COSPropInfo::getMemberGetAccess() const { return PublicAccess; }
const ExtendedMemberAccess* COSPropInfo::getExtendedGetAccess() const { return nullptr; }
MemberAccess COSPropInfo::getMemberSetAccess() const { return PublicAccess; }
const ExtendedMemberAccess* COSPropInfo::getExtendedSetAccess() const { return nullptr; }
bool COSPropInfo::isSealed() const { return false; }
bool COSPropInfo::hasInternalDefault() const { return false; }
bool COSPropInfo::isInitAllowed() const { return true; }
bool COSPropInfo::isDefaultAllowed() const { return true; }
bool COSPropInfo::isResetAllowed() const { return true; }
bool COSPropInfo::isAbstract() const { return false; }
bool COSPropInfo::isTransient() const { return false; }
bool COSPropInfo::isCopyAllowed() const { return true; }
bool COSPropInfo::isWarnOnCopyError() const { return false; }
bool COSPropInfo::isListenerGetAllowed() const { return true; }
bool COSPropInfo::isListenerSetAllowed() const { return true; }
bool COSPropInfo::isInspectAllowed() const { return true; }
bool COSPropInfo::isAbortSet() const { return false; }
bool COSPropInfo::isVisible() const { return true; }
bool COSPropInfo::isNeverAmbiguous() const { return false; }
int COSPropInfo::getPartialMatchPriority() const { return 0; }
bool COSPropInfo::isStatic() const { return false; }
bool COSPropInfo::isDependent() const { return false; }
bool COSPropInfo::isGrandfathered() const { return false; }
bool COSPropInfo::isWeakReference() const { return false; }
bool COSPropInfo::canContainInterfaces() const {
  COSDataTypePtr type = getDataType();
  return type && type->canContainInterfaces();
}
bool COSPropInfo::isDestructible() const { return true; }

void COSPropInfo::setAsPublicClient(COSInterface* object, COSValue value) {
  object->setPropertyValue(COSGetPublicClient(), this, value);
}

void COSPropInfo::releaseValue(COSInterface*, COSValue value) const {
  if (COSDataTypePtr type = getDataType()) type->destroy(value);
}

void COSPropInfo::getInterfaces(const COSClient*, COSInterface* instance, std::vector<COSInterfacePtr>& out) const {
  COSDataTypePtr type = getDataType();
  if (!type || !type->canContainInterfaces()) return;
  COSValue v = getValue(instance);
  try {
    type->getInterfaces(v, out);
  } catch (...) {
    releaseValue(instance, v);
    throw;
  }
  releaseValue(instance, v);
}

void COSPropInfo::getVLArrays(const COSClient*, COSInterface* instance, std::vector<vxArray*>& out) const {
  COSDataTypePtr type = getDataType();
  if (!type || !type->isVANTELArrayType()) return;
  // The arrays handed out belong to the caller.
  out.push_back(getValue(instance).asPointer<vxArray>());
}

void vcos::internal::raiseNoInstanceData(const COSPropInfo* property) {
  throw foundation::core::except::Error(vcos::msg::NoInstanceData, property->getName());
}
