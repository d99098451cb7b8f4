// The client path of property get and set. Set: access check; PreSet
// listeners; the meta class's customSetPropertyValue when the property is
// turned on for the object's class, else the property's setValue; PostSet
// listeners. Get mirrors it with PreGet, getValue, PostGet. The common case
// (public property, no listeners, no custom set) is a table probe, two
// access queries and the property's own method: no allocation, no strings.
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSCasts.h"
#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSObjectOperations.h"

using foundation::core::except::Error;
using vcos::internal::admits;
using vcos::internal::InstanceExtras;
using vcos::internal::ObjectOps;
using vcos::internal::PropSlot;

namespace {

const char* propertyEventName(COSPropertyEvent kind) {
  switch (kind) {
    case COSPropertyEvent::PreSet:
      return "PreSet";
    case COSPropertyEvent::PostSet:
      return "PostSet";
    case COSPropertyEvent::PreGet:
      return "PreGet";
    case COSPropertyEvent::PostGet:
      return "PostGet";
  }
  return "";
}

bool isDynamicProperty(const COSInterface* o, const COSPropInfo* p) noexcept {
  const InstanceExtras* x = ObjectOps::extrasIfAny(o);
  if (!x) return false;
  for (const COSInterfacePtr& d : x->dynamicProperties)
    if (d.get() == p) return true;
  return false;
}

// Null when the property is a dynamic one of this object; raises when it
// belongs to neither the class nor the object.
const PropSlot* slotOrRaise(const COSInterface* o, const COSPropInfo* p) {
  COSClass* cls = o->getClass();
  if (cls)
    if (const PropSlot* s = cls->findSlot(p)) return s;
  if (isDynamicProperty(o, p)) return nullptr;
  throw Error(vcos::msg::PropertyNotOfClass, p->getName(), cls ? cls->getName() : "");
}

void firePropertyListeners(COSInterface* o, COSPropertyEvent kind, const COSPropInfo* p, COSValue value) {
  InstanceExtras* x = ObjectOps::extrasIfAny(o);
  if (!x) return;
  std::vector<COSInterfacePtr> targets;
  for (auto& e : x->listeners)
    if (e.property == p && e.kind == kind) targets.push_back(e.listener);
  if (targets.empty()) return;
  static const COSID names[] = {COSID("PreSet"), COSID("PostSet"), COSID("PreGet"), COSID("PostGet")};
  COSInterfacePtr data(new COSEventData(o, names[static_cast<int>(kind)]));
  auto* ed = static_cast<COSEventData*>(data.get());
  ed->setPropertyEvent(p, value);
  ed->incrementNotifyCount();
  struct Done {
    COSEventData* d;
    ~Done() { d->decrementNotifyCount(); }
  } done{ed};
  for (auto& l : targets) {
    if (o->isDestroyed()) break;
    static_cast<COSListener*>(l.get())->fire(o, ed);
  }
}

bool hasPropertyListeners(const COSInterface* o) noexcept {
  const InstanceExtras* x = ObjectOps::extrasIfAny(o);
  return x && x->propertyListenerCount > 0;
}

}  // namespace

COSValue COSInterface::getPropertyValue(const COSClient* client, const COSPropInfo* property) {
  checkValid();
  slotOrRaise(this, property);
  MemberAccess access = property->getMemberGetAccess();
  if (access != PublicAccess || property->getExtendedGetAccess())
    if (!admits(access, property->getExtendedGetAccess(), property->getDefiningClass(), client))
      throw Error(vcos::msg::GetProhibited, property->getName(), class_ ? class_->getName() : "");
  const bool listeners = hasPropertyListeners(this);
  if (listeners) firePropertyListeners(this, COSPropertyEvent::PreGet, property, COSValue());
  COSValue value = property->getValue(this);
  if (listeners) {
    try {
      firePropertyListeners(this, COSPropertyEvent::PostGet, property, value);
    } catch (...) {
      property->releaseValue(this, value);
      throw;
    }
  }
  return value;
}

void COSInterface::setPropertyValue(const COSClient* client, const COSPropInfo* property, COSValue value) {
  checkValid();
  const PropSlot* slot = slotOrRaise(this, property);
  MemberAccess access = property->getMemberSetAccess();
  if (access != PublicAccess || property->getExtendedSetAccess())
    if (!admits(access, property->getExtendedSetAccess(), property->getDefiningClass(), client))
      omIssueSetProhibitedError(property, class_);
  const bool listeners = hasPropertyListeners(this);
  if (listeners) firePropertyListeners(this, COSPropertyEvent::PreSet, property, value);
  auto* p = const_cast<COSPropInfo*>(property);
  if (slot && slot->customSet)
    slot->customSet->customSetPropertyValue(this, p, value);
  else
    p->setValue(this, value);
  if (listeners && !isDestroyed()) firePropertyListeners(this, COSPropertyEvent::PostSet, property, value);
}

void COSInterface::releasePropertyValue(const COSClient*, const COSPropInfo* property, COSValue value) {
  property->releaseValue(this, value);
}

// A value in the generic store is dropped, so the property reads its default
// again; other properties are set to their factory default when they have one.
void COSInterface::resetToClassDefaults() {
  checkValid();
  if (!class_) return;
  for (const PropSlot& s : class_->tables().properties) {
    COSPropInfo* p = s.property;
    if (!p->isResetAllowed() || ObjectOps::eraseStoredValue(this, p)) continue;
    COSValue d = p->getFactoryDefault();
    if (!d.isEmpty() || p->hasInternalDefault()) p->setValue(this, d);
  }
}

void COSInterface::addPropertyListener(COSPropertyEvent kind, const COSPropInfo* property, COSListener* listener) {
  checkValid();
  slotOrRaise(this, property);
  bool setKind = kind == COSPropertyEvent::PreSet || kind == COSPropertyEvent::PostSet;
  if (setKind ? !property->isListenerSetAllowed() : !property->isListenerGetAllowed())
    throw Error(vcos::msg::PropertyNotObservable, property->getName(), class_ ? class_->getName() : "");
  auto& x = ObjectOps::extras(this);
  x.listeners.push_back({COSID(propertyEventName(kind)), property, kind, COSInterfacePtr(listener), 0, 0});
  ++x.propertyListenerCount;
}

void COSInterface::removePropertyListener(COSPropertyEvent kind, const COSPropInfo* property, const COSListener* listener) {
  InstanceExtras* x = ObjectOps::extrasIfAny(this);
  if (!x) return;
  for (auto it = x->listeners.begin(); it != x->listeners.end(); ++it) {
    if (it->property != property || it->kind != kind || it->listener.get() != listener) continue;
    COSInterfacePtr keep = it->listener;
    static_cast<COSListener*>(keep.get())->markRemoved();
    x->listeners.erase(it);
    --x->propertyListenerCount;
    return;
  }
}

void omIssueSetProhibitedError(const COSPropInfo* property, const COSClass* cls) {
  throw Error(vcos::msg::SetProhibited, property ? property->getName() : "", cls ? cls->getName() : "");
}

void vcos::omCopyPropertyWithNoPermissionCheck(const COSInterfacePtr& object, const COSPropInfo* property,
                                               COSValue value) {
  object->checkValid();
  const_cast<COSPropInfo*>(property)->setValue(object.get(), value);
}

void COSCustomMetaClass::setPropertyValue(COSInterface* object, COSPropInfo* property, COSValue value) {
  object->checkValid();
  property->setValue(object, value);
}

namespace {
const COSPropInfo* asProperty(const COSInterfacePtr& p, const COSClass* cls) {
  const COSPropInfo* prop = cosiToProp(p.get());
  if (!prop) throw Error(vcos::msg::UnknownProperty, "", cls ? cls->getName() : "");
  return prop;
}
}  // namespace

COSValue COSInterface::getPropertyValue(const COSClient* client, const COSInterfacePtr& property) {
  return getPropertyValue(client, asProperty(property, class_));
}
void COSInterface::setPropertyValue(const COSClient* client, const COSInterfacePtr& property, COSValue value) {
  setPropertyValue(client, asProperty(property, class_), value);
}
void COSInterface::releasePropertyValue(const COSClient* client, const COSInterfacePtr& property, COSValue value) {
  releasePropertyValue(client, asProperty(property, class_), value);
}
