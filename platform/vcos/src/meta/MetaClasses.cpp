// The built-in meta classes "meta.class", "meta.property", "meta.method" and
// "meta.event": the classes of class, property, method and event objects.
// The data block of each is the described object itself, so a custom meta
// class deriving from one can reach the description from its own block. Their
// properties are the attributes, read (and, where the description can change,
// written) like any other property.
#include <functional>
#include <string>

#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSCustomMetaEventInfo.h"
#include "vcos/COSCustomMetaMemberInfo.h"
#include "vcos/COSCustomMetaPropertyInfo.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPackage.h"
#include "vcos/COSPropT.h"
#include "vcos/COSUseCustomMetaData.h"

namespace vcos::internal {
namespace {

const COSID& idMetaClass() {
  static const COSID id("meta.class");
  return id;
}
const COSID& idMetaProperty() {
  static const COSID id("meta.property");
  return id;
}
const COSID& idMetaMethod() {
  static const COSID id("meta.method");
  return id;
}
const COSID& idMetaEvent() {
  static const COSID id("meta.event");
  return id;
}

// An attribute of a described object, computed from it.
class AttributeProp final : public COSPropT {
 public:
  using Getter = std::function<COSValue(COSInterface*)>;
  using Setter = std::function<void(COSInterface*, COSValue)>;
  AttributeProp(COSID cls, const char* name, const char* type, Getter get, Setter set = nullptr)
      : COSPropT(cls, COSID(name), COSDataTypePtr(type), COSValue(), PublicAccess, set ? PublicAccess : NoAccess,
                 COSPropVisible | COSPropListenerGetAllowed | COSPropListenerSetAllowed, ""),
        get_(std::move(get)),
        set_(std::move(set)) {}
  COSValue getValue(COSInterface* o) const override { return get_(o); }
  void setValue(COSInterface* o, COSValue v) override {
    if (!set_) omIssueSetProhibitedError(this, o->getClass());
    set_(o, v);
  }

 private:
  Getter get_;
  Setter set_;
};

COSValue text(const char* s) { return COSValue(new std::string(s ? s : "")); }
COSValue flag(bool b) { return COSValue::fromBool(b); }
COSValue number(int i) { return COSValue::fromInt(i); }

template <class F>
void attribute(COSClass* cls, const char* name, const char* type, F get, AttributeProp::Setter set = nullptr) {
  cls->addProperty(new AttributeProp(cls->getID(), name, type, std::move(get), std::move(set)));
}

class MetaClassInfo final : public COSCustomMetaClass {
 public:
  const char* getName() const override { return "class"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    auto c = [](COSInterface* o) { return cosiToClass(o); };
    attribute(cls, "Name", "asciiString", [c](COSInterface* o) { return text(c(o)->getName()); });
    attribute(cls, "Description", "asciiString",
              [c](COSInterface* o) { return text(c(o)->getClassInfo()->getDescription()); });
    attribute(cls, "Abstract", "logical scalar", [c](COSInterface* o) { return flag(c(o)->isAbstract()); });
    attribute(cls, "Sealed", "logical scalar", [c](COSInterface* o) { return flag(c(o)->isSealed()); });
    attribute(cls, "Hidden", "logical scalar", [c](COSInterface* o) { return flag(c(o)->getClassInfo()->isHidden()); });
    attribute(cls, "HandleCompatible", "logical scalar",
              [c](COSInterface* o) { return flag(c(o)->getClassInfo()->isHandleCompatible()); });
  }
  void* allocateInstance(COSInterface* o) override { return cosiToClass(o); }
};

class MetaPropertyInfo final : public COSCustomMetaPropertyInfo {
 public:
  const char* getName() const override { return "property"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    auto p = [](COSInterface* o) { return cosiToProp(o); };
    auto generic = [](COSInterface* o) { return dynamic_cast<COSGenericProp*>(cosiToProp(o)); };
    attribute(cls, "Name", "asciiString", [p](COSInterface* o) { return text(p(o)->getName()); });
    attribute(cls, "Description", "asciiString", [p](COSInterface* o) { return text(p(o)->getDescription()); });
    attribute(cls, "GetAccess", "int32 scalar", [p](COSInterface* o) { return number(p(o)->getMemberGetAccess()); });
    attribute(cls, "SetAccess", "int32 scalar", [p](COSInterface* o) { return number(p(o)->getMemberSetAccess()); });
    attribute(cls, "Dependent", "logical scalar", [p](COSInterface* o) { return flag(p(o)->isDependent()); });
    attribute(cls, "AbortSet", "logical scalar", [p](COSInterface* o) { return flag(p(o)->isAbortSet()); });
    attribute(cls, "SetObservable", "logical scalar", [p](COSInterface* o) { return flag(p(o)->isListenerSetAllowed()); });
    // Writable where the description can change (run-time properties).
    auto writable = [generic](void (COSGenericProp::*set)(bool) noexcept) {
      return [generic, set](COSInterface* o, COSValue v) {
        COSGenericProp* g = generic(o);
        if (!g) omIssueSetProhibitedError(nullptr, o->getClass());
        (g->*set)(v.asBool());
      };
    };
    attribute(cls, "Transient", "logical scalar", [p](COSInterface* o) { return flag(p(o)->isTransient()); },
              writable(&COSGenericProp::setTransient));
    attribute(cls, "Hidden", "logical scalar", [p](COSInterface* o) { return flag(!p(o)->isVisible()); },
              [generic](COSInterface* o, COSValue v) {
                COSGenericProp* g = generic(o);
                if (!g) omIssueSetProhibitedError(nullptr, o->getClass());
                g->setVisible(!v.asBool());
              });
    attribute(cls, "Resettable", "logical scalar", [p](COSInterface* o) { return flag(p(o)->isResetAllowed()); },
              writable(&COSGenericProp::setResetAllowed));
  }
  void* allocateInstance(COSInterface* o) override { return cosiToProp(o); }
};

class MetaMethodInfo final : public COSCustomMetaMemberInfo {
 public:
  const char* getName() const override { return "method"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    auto m = [](COSInterface* o) { return cosiToMethod(o); };
    attribute(cls, "Name", "asciiString", [m](COSInterface* o) { return text(m(o)->getName()); });
    attribute(cls, "Description", "asciiString", [m](COSInterface* o) { return text(m(o)->getDescription()); });
    attribute(cls, "Access", "int32 scalar", [m](COSInterface* o) { return number(m(o)->getMemberAccess()); });
    attribute(cls, "Static", "logical scalar", [m](COSInterface* o) { return flag(m(o)->isStatic()); });
    attribute(cls, "Abstract", "logical scalar", [m](COSInterface* o) { return flag(m(o)->isAbstract()); });
    attribute(cls, "Hidden", "logical scalar", [m](COSInterface* o) { return flag(!m(o)->isVisible()); });
  }
  void* allocateInstance(COSInterface* o) override { return cosiToMethod(o); }
};

class MetaEventInfo final : public COSCustomMetaEventInfo {
 public:
  const char* getName() const override { return "event"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    auto e = [](COSInterface* o) { return cosiToEvent(o); };
    attribute(cls, "Name", "asciiString", [e](COSInterface* o) { return text(e(o)->getName()); });
    attribute(cls, "Description", "asciiString", [e](COSInterface* o) { return text(e(o)->getDescription()); });
    attribute(cls, "ListenAccess", "int32 scalar", [e](COSInterface* o) { return number(e(o)->getListenAccess()); });
    attribute(cls, "NotifyAccess", "int32 scalar", [e](COSInterface* o) { return number(e(o)->getSendAccess()); });
    attribute(cls, "Hidden", "logical scalar", [e](COSInterface* o) { return flag(e(o)->isHidden()); });
  }
  void* allocateInstance(COSInterface* o) override { return cosiToEvent(o); }
};

class MetaNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "meta"; }
  const char* getDescription() const override { return "The meta classes of the class-object system."; }
};

}  // namespace

COSID metaClassId() { return idMetaClass(); }

COSID blockAliasOf(COSID classId) {
  static const COSID cls("vantel.metadata.Class"), prop("vantel.metadata.Property"),
      method("vantel.metadata.Method"), event("vantel.metadata.Event");
  if (classId == idMetaClass()) return cls;
  if (classId == idMetaProperty()) return prop;
  if (classId == idMetaMethod()) return method;
  if (classId == idMetaEvent()) return event;
  return COSID();
}

void registerMetaClasses() {
  COSPackage* meta = COSPackage::addNamespace(new MetaNamespace);
  meta->addClass(new MetaClassInfo);
  meta->addClass(new MetaPropertyInfo);
  meta->addClass(new MetaMethodInfo);
  meta->addClass(new MetaEventInfo);
  installArrayHooks();
}

}  // namespace vcos::internal

// Defaults of the custom meta class base: members belong to the built-in
// meta classes, nothing is finished, and the custom set path is the plain
// store.
COSID COSCustomMetaClass::getMetaPropertyClassID() const { return vcos::internal::idMetaProperty(); }
COSID COSCustomMetaClass::getMetaMethodClassID() const { return vcos::internal::idMetaMethod(); }
COSID COSCustomMetaClass::getMetaEventClassID() const { return vcos::internal::idMetaEvent(); }
COSID COSCustomMetaClass::getMetaEnumeratedValueClassID() const {
  static const COSID id("meta.EnumeratedValue");
  return id;
}
void COSCustomMetaClass::finishClassCreation(COSClass*) {}
void COSCustomMetaClass::finishPropertyCreation(COSClass*) {}
void COSCustomMetaClass::customSetPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) {
  setPropertyValue(object, property, value);
}
COSValue COSCustomMetaClass::customGetPropertyValue(COSInterface* object, COSPropInfo* property) {
  object->checkValid();
  return property->getValue(object);
}
void COSCustomMetaClass::customReleasePropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) {
  property->releaseValue(object, value);
}

bool MetaClassBase::isSealed() const { return false; }
bool MetaClassBase::isHidden() const { return true; }

COSUseCustomMetaData::~COSUseCustomMetaData() = default;
