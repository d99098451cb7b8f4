// A live class. Built on first request from its COSClassInfo: the class
// system calls initializeClass, in which the info adds superclasses, allowed
// subclasses and members; then the ancestry is linearised (depth first,
// duplicates dropped), the member tables are built, and, for a custom meta
// class, finishPropertyCreation and finishClassCreation run. A class is itself
// an instance of its meta class ("meta.class" or a custom one). Classes live
// for the life of the process.
#pragma once

#include <memory>
#include <vector>

#include "vcos/COSClient.h"
#include "vcos/COSDataTypePtr.h"
#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"

class COSClassInfo;
class COSEventInfo;
class COSIterator;
class COSListener;
class COSMethodInfo;
class COSPackage;
class COSPropInfo;
class COSVisitor;

namespace vcos::internal {
struct ClassTables;
struct PropSlot;
}  // namespace vcos::internal

class VCOS_API COSClass final : public COSInterface {
 public:
  // The class of that full name, built on first request; null when no
  // package knows it. A failure while building raises and leaves no class.
  static COSClass* getClass(COSID id);
  static COSInterfacePtr getClassInterface(COSID id);

  const char* getName() const noexcept { return id_.c_str(); }
  COSID getID() const noexcept { return id_; }
  COSClassInfo* getClassInfo() const noexcept { return info_; }
  COSPackage* getPackage() const noexcept { return package_; }
  // The meta class of this class (the class of the class object).
  COSClass* getMetaClass() const noexcept { return getClass(); }
  using COSInterface::getClass;

  // True if this class is `id` or derives from it.
  bool isSubclassOf(COSID id) const noexcept;
  bool isSubclassOf(const COSClass* other) const noexcept;
  bool isAbstract() const;
  bool isSealed() const;
  // The direct superclasses, in the order added.
  const std::vector<COSClass*>& getSuperclasses() const noexcept;
  // This class, then its ancestors depth first, each once.
  const std::vector<COSClass*>& getAncestry() const noexcept;

  // Members, inherited ones included.
  void getProperties(COSIterator& out) const;
  void getMethods(COSIterator& out) const;
  void getEvents(COSIterator& out) const;
  // Hands the visitor the properties defined by each class of the ancestry.
  void acceptPropertyVisitor(COSVisitor& visitor) const;
  std::size_t getPropertyCount() const noexcept;
  COSPropInfo* getPropertyAt(std::size_t index) const noexcept;
  // Exact, case-insensitive, then unique-prefix look-up (where allowed)
  // among this class's properties; raises
  // "VANTEL:vcos:AmbiguousPropertyName" for an ambiguous prefix. (The
  // two-argument form, from COSInterface, looks among the attributes of the
  // class object itself.)
  COSPropInfo* findProperty(COSID name) const;
  using COSInterface::findProperty;
  // Exact look-up only; allocation-free.
  COSPropInfo* findPropertyExact(COSID name) const noexcept;
  // The most derived method of that name, or null.
  COSMethodInfo* findMethod(COSID name) const noexcept;
  // The most derived method of that name that a look-up with these flags
  // sees, or null: static methods only when `staticOrInstance` (instance
  // methods always), hidden ones (isVisible false) only when `withHidden`,
  // and with a client only those whose access admits it (null: no check).
  COSMethodInfo* findMethod(COSID name, bool staticOrInstance, bool withHidden, const COSClient* client) const noexcept;
  COSEventInfo* findEvent(COSID name) const noexcept;

  // Used in initializeClass. `first` puts the superclass before the others.
  void addSuperclass(COSID id, bool first = false, int reserved1 = 0, int reserved2 = 1);
  // Closes the list of classes that may derive directly from this one.
  void addAllowedSubclass(COSID id);
  // The class takes ownership of the info.
  void addProperty(COSPropInfo* info);
  void addMethod(COSMethodInfo* info);
  void addEvent(COSEventInfo* info);
  // The type to use for a property of type `typeId`; raises
  // "VANTEL:vcos:UnknownType" if there is none.
  COSDataTypePtr validatePropertyType(COSID classId, COSID typeId);
  void notifyInstanceAllocated(COSInterface* instance) noexcept;
  // Blocks made for instances so far, through notifyInstanceAllocated.
  std::size_t allocatedInstanceCount() const noexcept { return allocatedInstances_; }

  // Sets an attribute (a property of the property object, such as
  // "AffectsObject") of one of this class's properties, without access check.
  void setPropertyAttribute(COSID propertyName, COSID attributeName, COSValue value);

  // The client that sees this class's private members.
  const COSClient* getPrivateClient() const noexcept { return &privateClient_; }

  // A new instance: one data block per allocating class of the ancestry
  // (base first), then the constructor method (the method named like the
  // class's last name component, defined by the nearest class of the
  // ancestry that has one; it is invoked with nlhs 1, plhs[0] a 1-by-1
  // object array holding the new object, and the caller's inputs), then the
  // "InstanceCreated" class event. Raises for an abstract class.
  COSInterfacePtr createInstance(const COSClient* client, int nrhs = 0, const COSValue* prhs = nullptr);
  // An instance whose block for this class is `data` (other blocks are
  // allocated as usual); no constructor runs.
  COSInterfacePtr wrapInstanceData(void* data);

  // Listeners on the instances of this class and its subclasses. An event
  // that this class declares must admit `client` by its listen access
  // ("VANTEL:vcos:EventAccessDenied"); the form without a client adds as
  // the public client.
  void addClassListener(const COSClient* client, COSID eventId, COSListener* listener, int priority = 0);
  void addClassListener(COSID eventId, COSListener* listener, int priority = 0);
  void removeClassListener(COSID eventId, const COSListener* listener);

  // Listeners on a property event of `property` (one of this class's
  // properties; it is matched by name, so an override in a subclass is
  // covered too) on every instance of this class and its subclasses. They
  // run before the instance's own property listeners, in the order added.
  // The property must allow listeners for the event's kind
  // ("VANTEL:vcos:PropertyNotObservable") and admit `client` by its get
  // access ("VANTEL:vcos:PropertyListenDenied").
  void addClassPropertyListener(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                                COSListener* listener);
  void removeClassPropertyListener(COSPropertyEvent kind, const COSPropInfo* property, const COSListener* listener);

  // Custom meta class support: whether sets of `property` go through the
  // meta class's customSetPropertyValue for instances of this class, and
  // whether gets and releases go through its customGetPropertyValue and
  // customReleasePropertyValue.
  bool isCustomSetOn(const COSPropInfo* property) const noexcept;
  bool isCustomGetOn(const COSPropInfo* property) const noexcept;
  // True when the meta class of this class is a custom one.
  bool usesCustomMetaClass() const noexcept { return customMeta_; }

  // Internal: the slot of a property in this class's table.
  const vcos::internal::PropSlot* findSlot(const COSPropInfo* property) const noexcept;
  vcos::internal::ClassTables& tables() const noexcept { return *tables_; }

 private:
  friend class vcos::internal::ObjectOps;
  COSClass(COSID id, COSClassInfo* info, COSPackage* package);
  ~COSClass() override;

  COSID id_;
  COSClassInfo* info_;
  COSPackage* package_;
  COSClient privateClient_;
  bool customMeta_ = false;
  std::size_t allocatedInstances_ = 0;
  std::unique_ptr<vcos::internal::ClassTables> tables_;
};
