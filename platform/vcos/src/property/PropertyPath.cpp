// The client path of property get and set. Set: access check; PreSet
// listeners; the meta class's customSetPropertyValue when the property is
// turned on for the object's class, else the property's setValue; PostSet
// listeners. Get mirrors it with PreGet, customGetPropertyValue or getValue,
// PostGet; a release goes to the customReleasePropertyValue of the meta class
// that handed the value out. Property listeners are the class-level ones of
// the object's classes, then the object's own. The common case (public
// property, no listeners, no custom path) is a table probe, two access
// queries, one route test and the property's own method: no allocation, no
// strings.
#include <algorithm>

#include "vcos/src/property/PropertyPath.h"

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSCasts.h"
#include "vcos/COSCustomMetaClass.h"
#include "vcos/FaultInjection.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/PropertyRouteEpoch.h"

using foundation::core::except::Error;
using vcos::internal::admits;
using vcos::internal::ClassPropertyListener;
using vcos::internal::hasPropertyListeners;
using vcos::internal::InstanceExtras;
using vcos::internal::ObjectOps;
using vcos::internal::PropSlot;

namespace {

// The slot of a dynamic property: no marks.
const PropSlot kDynamicSlot{};

bool isDynamicProperty(const COSInterface* o, const COSPropInfo* p) noexcept {
  const InstanceExtras* x = ObjectOps::extrasIfAny(o);
  if (!x) return false;
  for (const COSInterfacePtr& d : x->dynamicProperties)
    if (d.get() == p) return true;
  return false;
}

// kDynamicSlot when the property is a dynamic one of this object; raises
// when it belongs to neither the class nor the object.
const PropSlot& slotOrRaise(const COSInterface* o, const COSPropInfo* p) {
  COSClass* cls = o->getClass();
  if (cls)
    if (const PropSlot* s = cls->findSlot(p)) return *s;
  if (isDynamicProperty(o, p)) return kDynamicSlot;
  throw Error(vcos::msg::PropertyNotOfClass, p->getName(), cls ? cls->getName() : "");
}

// Runs the class-level listeners (when the slot says there are any) and the
// object's own listeners on `kind` events of `p`, from a list taken first.
void firePropertyListeners(COSInterface* o, const PropSlot& slot, COSPropertyEvent kind, const COSPropInfo* p,
                           COSValue value) {
  std::vector<COSInterfacePtr> targets;
  if (slot.route & vcos::internal::kRouteClassListeners) {
    std::vector<const ClassPropertyListener*> fromClasses;
    const COSID name = p->getID();
    for (COSClass* a : o->getClass()->tables().ancestry)
      for (const ClassPropertyListener& l : a->tables().propertyListeners)
        if (l.property == name && l.kind == kind) fromClasses.push_back(&l);
    std::sort(fromClasses.begin(), fromClasses.end(),
              [](const ClassPropertyListener* a, const ClassPropertyListener* b) { return a->sequence < b->sequence; });
    for (const ClassPropertyListener* l : fromClasses) targets.push_back(l->listener);
  }
  if (InstanceExtras* x = ObjectOps::extrasIfAny(o))
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

}  // namespace

// The get and set paths past their first test: listeners, a custom path, or
// both. They work on a copy of the slot: a listener may add properties to the
// class, which moves its table, or turn a path on; this call keeps the route
// it started with, so a release pairs with its get.
COSValue vcos::internal::getObserved(COSInterface* o, const PropSlot slot, const COSPropInfo* property) {
  const bool listeners = (slot.route & vcos::internal::kRouteClassListeners) || hasPropertyListeners(o);
  if (listeners) {
    firePropertyListeners(o, slot, COSPropertyEvent::PreGet, property, COSValue());
    if (o->isDestroyed()) throw Error(vcos::msg::InvalidHandle);  // deleted by a listener
  }
  auto* p = const_cast<COSPropInfo*>(property);
  COSCustomMetaClass* meta = slot.customGet;
  COSValue value = meta ? meta->customGetPropertyValue(o, p) : property->getValue(o);
  if (listeners) {
    try {
      firePropertyListeners(o, slot, COSPropertyEvent::PostGet, property, value);
    } catch (...) {
      if (meta)
        meta->customReleasePropertyValue(o, p, value);
      else
        property->releaseValue(o, value);
      throw;
    }
  }
  return value;
}

namespace {

void setObserved(COSInterface* o, const PropSlot slot, const COSPropInfo* property, COSValue value) {
  const bool listeners = (slot.route & vcos::internal::kRouteClassListeners) || hasPropertyListeners(o);
  if (listeners) {
    firePropertyListeners(o, slot, COSPropertyEvent::PreSet, property, value);
    // A PreSet listener may have deleted the object: its blocks are gone.
    if (o->isDestroyed()) throw Error(vcos::msg::InvalidHandle);
  }
  auto* p = const_cast<COSPropInfo*>(property);
  if (slot.customSet)
    slot.customSet->customSetPropertyValue(o, p, value);
  else
    p->setValue(o, value);
  if (listeners && !o->isDestroyed()) firePropertyListeners(o, slot, COSPropertyEvent::PostSet, property, value);
}

}  // namespace

COSValue COSInterface::getPropertyValue(const COSClient* client, const COSPropInfo* property) {
  checkValid();
  const PropSlot& slot = slotOrRaise(this, property);
  MemberAccess access = property->getMemberGetAccess();
  if (access != PublicAccess || property->getExtendedGetAccess())
    if (!admits(access, property->getExtendedGetAccess(), property->getDefiningClass(), client))
      throw Error(vcos::msg::GetProhibited, property->getName(), class_ ? class_->getName() : "");
  if (!(slot.route & vcos::internal::kGetRoutes) && !hasPropertyListeners(this)) return property->getValue(this);
  return vcos::internal::getObserved(this, slot, property);
}

void COSInterface::setPropertyValue(const COSClient* client, const COSPropInfo* property, COSValue value) {
  checkValid();
  vcos::fault::at(vcos::fault::Point::PropertySet);
  const PropSlot& slot = slotOrRaise(this, property);
  MemberAccess access = property->getMemberSetAccess();
  if (access != PublicAccess || property->getExtendedSetAccess())
    if (!admits(access, property->getExtendedSetAccess(), property->getDefiningClass(), client))
      omIssueSetProhibitedError(property, class_);
  if (!(slot.route & vcos::internal::kSetRoutes) && !hasPropertyListeners(this)) {
    const_cast<COSPropInfo*>(property)->setValue(this, value);
    return;
  }
  setObserved(this, slot, property, value);
}

bool COSInterface::hasOwnPropertyListeners() const noexcept { return hasPropertyListeners(this); }

std::atomic<std::uint64_t> vcos::internal::propertyRouteEpochCount{1};

void vcos::bumpPropertyRouteEpoch() noexcept {
  vcos::internal::propertyRouteEpochCount.fetch_add(1, std::memory_order_relaxed);
}

bool COSInterface::isUnobservedPublicSet(const COSPropInfo* property, COSCustomMetaClass*& customSet) const noexcept {
  if ((state_ & kDestroyed) || !class_) return false;
  const PropSlot* slot = class_->findSlot(property);
  if (!slot || (slot->route & vcos::internal::kRouteClassListeners) || hasPropertyListeners(this)) return false;
  if (property->getMemberSetAccess() != PublicAccess || property->getExtendedSetAccess()) return false;
  customSet = (slot->route & vcos::internal::kRouteCustomSet) ? slot->customSet : nullptr;
  return true;
}

// A value of a property whose gets go through a meta class goes back to that
// meta class. Classes without any such property pay one flag test.
void COSInterface::releasePropertyValue(const COSClient*, const COSPropInfo* property, COSValue value) {
  if (class_ && class_->tables().anyCustomGet)
    if (const PropSlot* slot = class_->findSlot(property); slot && slot->customGet) {
      slot->customGet->customReleasePropertyValue(this, const_cast<COSPropInfo*>(property), value);
      return;
    }
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

void vcos::internal::checkPropertyListen(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                                         const COSClass* cls) {
  const char* className = cls ? cls->getName() : "";
  bool setKind = kind == COSPropertyEvent::PreSet || kind == COSPropertyEvent::PostSet;
  if (setKind ? !property->isListenerSetAllowed() : !property->isListenerGetAllowed())
    throw Error(vcos::msg::PropertyNotObservable, property->getName(), className);
  if (!admits(property->getMemberGetAccess(), property->getExtendedGetAccess(), property->getDefiningClass(), client))
    throw Error(vcos::msg::PropertyListenDenied, property->getName(), className);
}

void COSInterface::addPropertyListener(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                                       COSListener* listener) {
  checkValid();
  slotOrRaise(this, property);
  vcos::internal::checkPropertyListen(client, kind, property, class_);
  auto& x = ObjectOps::extras(this);
  x.listeners.push_back({COSID(cosPropertyEventName(kind)), property, kind, COSInterfacePtr(listener), 0, 0});
  ++x.propertyListenerCount;
}

void COSInterface::addPropertyListener(COSPropertyEvent kind, const COSPropInfo* property, COSListener* listener) {
  addPropertyListener(COSGetPublicClient(), kind, property, listener);
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

const char* cosPropertyEventName(COSPropertyEvent kind) noexcept {
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
