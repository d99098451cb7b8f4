// The description of a class that a library supplies. The class system calls
// initializeClass once, when the class is first needed, and then the other
// operations as it works with the class and its instances. Every operation
// has a default that fits an ordinary concrete handle class.
#pragma once

#include <cstddef>
#include <vector>

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/MemberAccess.h"

class COSClass;
class COSClient;
class COSDataTypePtr;
class COSValue;
struct vxArray;

class VCOS_API COSClassInfo {
 public:
  // Class infos come from the class system's allocator; a package owns them
  // once added.
  static void* operator new(std::size_t size);
  static void operator delete(void* p) noexcept;

  COSClassInfo() = default;
  COSClassInfo(const COSClassInfo&) = delete;
  COSClassInfo& operator=(const COSClassInfo&) = delete;
  virtual ~COSClassInfo();

  // The name within the package ("Line"); the full name is the package name,
  // a dot and this.
  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  virtual ClassAccess getAccess() const;
  // Adds superclasses, allowed subclasses, properties, methods and events.
  virtual void initializeClass(COSClass* cls, const COSClient* client);
  // The data block of this class for a new instance, or null for none. Call
  // cls->notifyInstanceAllocated(instance) when a block is made.
  virtual void* allocateInstance(COSInterface* instance);
  virtual void deallocateInstance(COSInterface* instance, void* data);
  virtual void updateInstance(COSInterface* instance, void* data);
  // Asked before an explicit deletion starts; false keeps the object. Not
  // asked when the last strong reference goes or an owner deletes its
  // children: those always delete.
  virtual bool isOkToDestroy(const COSClient* client, COSInterface* instance);
  virtual bool isHidden() const;
  virtual bool isCompatibleInexactProperties() const;
  virtual bool isFullNameDisplayed() const;
  virtual bool isPropertyNameReservedByThisClass(COSID name) const;
  virtual bool canOtherClassContainThisClass(const COSClass* other) const;
  virtual bool canThisClassContainOtherClass(const COSClass* other) const;
  virtual bool isHandleClass() const;
  virtual bool isHandleCompatible() const;
  virtual bool isEnumeration() const;
  virtual MemberAccess getConnectAccess() const;
  virtual COSConnectivity getConnectivity() const;
  virtual bool areChildrenSaved() const;
  virtual bool isAbstract() const;
  virtual bool useClassDefaultsOnLoad() const;
  // A sealed class refuses every subclass.
  virtual bool isSealed() const;
  // Whether a unique prefix of a property name finds the property.
  virtual bool isPropertyTruncationAllowed() const;
  virtual bool isConstructedOnLoad() const;
  virtual bool arePropertiesCaseInsensitive() const;
  virtual bool isInstanceLeaf() const;
  virtual bool isDestructible() const;
  virtual bool isLocked() const;
  virtual void instanceLoaded(COSInterface* instance);
  // Called as the serializer saves the instance. True when the class put a
  // saved form of its own in `value` (of type `type`); false saves the
  // instance the ordinary way.
  virtual bool customSave(COSInterface* instance, COSValue& value, COSDataTypePtr& type);
  // Called once the serializer has restored the instance; `value` is the
  // saved form (a 1-by-1 array of the instance when its properties were
  // restored already) and `type` its type. The default does nothing.
  virtual void customLoad(COSInterfacePtr& instance, COSValue value, COSDataTypePtr type);
  virtual const char* getModule() const;
  virtual bool areClassFunctionsAllowed() const;
  virtual bool areExtensionMethodsAllowed() const;
  virtual bool usesRootRecords() const;
  virtual bool doEventsHaveSeparateNamespace() const;
  virtual bool doesInexactPropertyNameIssueWarning() const;
  // A class that keeps its own list of children answers true and fills
  // getChildrenOfInstance; search walks that list instead of the raw tree.
  virtual bool usesCustomChildrenList() const;
  virtual int getArrayNature() const;
  virtual void getChildrenOfInstance(COSInterface* instance, std::vector<COSInterfacePtr>& out);
  virtual bool classIsAbstract() const;
  virtual bool allowInstanceUpdates() const;
  virtual bool isIDConsistent() const;
  // A copy of `data` for `destination`, or null when blocks are not copied.
  virtual void* copyData(COSInterface* destination, const void* data);
  // False when allocateInstance never makes a block: the class gets no slot.
  virtual bool willAllocateData() const;
  // True when a call of allocateInstance that answers null, or the block
  // that a more basic class of the instance's ancestry made for it, gives
  // the same kind of answer for every instance of one class and has no
  // effect that deallocateInstance of that answer would not undo. Instances
  // made at their class's fixed offsets then skip both calls wherever the
  // first instance of their class got such an answer. False by default.
  virtual bool isSharedAnswerSkippable() const;
};
