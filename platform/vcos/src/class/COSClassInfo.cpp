// Defaults of the class info: an ordinary concrete handle class with no data
// block, properties matched without regard to case and not by prefix.
#include "vcos/COSClassInfo.h"

#include <new>

#include "vcos/AbstractClassInfo.h"
#include "vcos/COSDataType.h"
#include "vcos/COSDataTypePtr.h"
#include "vcos/COSValue.h"

void* COSClassInfo::operator new(std::size_t size) { return ::operator new(size); }
void COSClassInfo::operator delete(void* p) noexcept { ::operator delete(p); }

COSClassInfo::~COSClassInfo() = default;
const char* COSClassInfo::getDescription() const { return ""; }
const char* COSClassInfo::getDetailedDescription() const { return ""; }
ClassAccess COSClassInfo::getAccess() const { return ClassPublic; }
void COSClassInfo::initializeClass(COSClass*, const COSClient*) {}
void* COSClassInfo::allocateInstance(COSInterface*) { return nullptr; }
void COSClassInfo::deallocateInstance(COSInterface*, void*) {}
void COSClassInfo::updateInstance(COSInterface*, void*) {}
bool COSClassInfo::isOkToDestroy(const COSClient*, COSInterface*) { return true; }
bool COSClassInfo::isHidden() const { return false; }
bool COSClassInfo::isCompatibleInexactProperties() const { return true; }
bool COSClassInfo::isFullNameDisplayed() const { return true; }
bool COSClassInfo::isPropertyNameReservedByThisClass(COSID) const { return false; }
bool COSClassInfo::canOtherClassContainThisClass(const COSClass*) const { return true; }
bool COSClassInfo::canThisClassContainOtherClass(const COSClass*) const { return true; }
bool COSClassInfo::isHandleClass() const { return true; }
bool COSClassInfo::isHandleCompatible() const { return true; }
bool COSClassInfo::isEnumeration() const { return false; }
MemberAccess COSClassInfo::getConnectAccess() const { return PublicAccess; }
COSConnectivity COSClassInfo::getConnectivity() const { return COSConnectTree; }
bool COSClassInfo::areChildrenSaved() const { return true; }
bool COSClassInfo::isAbstract() const { return false; }
bool COSClassInfo::useClassDefaultsOnLoad() const { return false; }
bool COSClassInfo::isSealed() const { return false; }
bool COSClassInfo::isPropertyTruncationAllowed() const { return false; }
bool COSClassInfo::isConstructedOnLoad() const { return false; }
bool COSClassInfo::arePropertiesCaseInsensitive() const { return true; }
bool COSClassInfo::isInstanceLeaf() const { return false; }
bool COSClassInfo::isDestructible() const { return true; }
bool COSClassInfo::isLocked() const { return false; }
void COSClassInfo::instanceLoaded(COSInterface*) {}
bool COSClassInfo::customSave(COSInterface*, COSValue&, COSDataTypePtr&) { return false; }
void COSClassInfo::customLoad(COSInterfacePtr&, COSValue, COSDataTypePtr) {}
const char* COSClassInfo::getModule() const { return ""; }
bool COSClassInfo::areClassFunctionsAllowed() const { return true; }
bool COSClassInfo::areExtensionMethodsAllowed() const { return false; }
bool COSClassInfo::usesRootRecords() const { return false; }
bool COSClassInfo::doEventsHaveSeparateNamespace() const { return true; }
bool COSClassInfo::doesInexactPropertyNameIssueWarning() const { return false; }
bool COSClassInfo::usesCustomChildrenList() const { return false; }
int COSClassInfo::getArrayNature() const { return 0; }
void COSClassInfo::getChildrenOfInstance(COSInterface*, std::vector<COSInterfacePtr>&) {}
bool COSClassInfo::classIsAbstract() const { return isAbstract(); }
bool COSClassInfo::allowInstanceUpdates() const { return false; }
bool COSClassInfo::isIDConsistent() const { return true; }
void* COSClassInfo::copyData(COSInterface*, const void*) { return nullptr; }
bool COSClassInfo::willAllocateData() const { return true; }
bool COSClassInfo::isSharedAnswerSkippable() const { return false; }

bool AbstractClassInfo::isAbstract() const { return true; }
bool AbstractClassInfo::classIsAbstract() const { return true; }
bool AbstractClassInfo::isSealed() const { return false; }
