// Building a class from its class info on first request: meta class binding,
// initializeClass, the linearised ancestry, block slots and the merged member
// tables; then the custom meta class's finishing passes. Also membership and
// look-up operations on a built class.
#include "vcos/COSClass.h"

#include <algorithm>

#include "vcos/BuiltinClasses.h"
#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSCustomMetaClass.h"
#include "vcos/COSIterator.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSNamespaceInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/COSUseCustomMetaData.h"

using foundation::core::except::Error;
using vcos::internal::ClassTables;
using vcos::internal::ObjectOps;
using vcos::internal::PropSlot;

namespace vcos::internal {

std::unordered_map<COSID, ClassRegistration>& classRegistry() {
  static auto* registry = new std::unordered_map<COSID, ClassRegistration>;  // classes live forever
  return *registry;
}

void ensureBuiltins() {
  static bool done = false;
  if (done) return;
  done = true;
  registerMetaClasses();
  // "handle", "dynamicprops", the event and listener classes and the mixins
  // exist from the first use of the class system, like the meta classes.
  vcos::registerBuiltinClasses();
}

namespace {

// `slot` carries the marks inherited with the property (none for an own one).
void insertProperty(ClassTables& t, const PropSlot& slot) {
  vcos::bumpPropertyRouteEpoch();
  if (slot.customGet) t.anyCustomGet = true;
  COSID id = slot.property->getID();
  if (std::uint32_t* i = t.propertyIndex.find(id)) {
    t.properties[*i] = slot;
    return;
  }
  auto index = static_cast<std::uint32_t>(t.properties.size());
  t.properties.push_back(slot);
  t.propertyIndex.set(id, index);
  t.foldedPropertyIndex.add(id.folded(), index);
}

MethodGroup& methodGroup(ClassTables& t, COSID name) {
  if (std::uint32_t* i = t.methodIndex.find(name)) return t.methods[*i];
  t.methodIndex.set(name, static_cast<std::uint32_t>(t.methods.size()));
  t.methods.push_back(MethodGroup{name, {}});
  return t.methods.back();
}

void insertMethod(ClassTables& t, COSMethodInfo* m, bool mostDerived) {
  ++methodTableEpoch;
  auto& c = methodGroup(t, m->getID()).candidates;
  if (std::find(c.begin(), c.end(), m) != c.end()) return;
  if (mostDerived)
    c.insert(c.begin(), m);
  else
    c.push_back(m);
}

void insertEvent(ClassTables& t, COSEventInfo* e, bool override) {
  // The events that notifyEvent found with the class listeners are found again.
  ++classListenerEpoch;
  if (std::uint32_t* i = t.eventIndex.find(e->getID())) {
    if (override) t.events[*i] = e;
    return;
  }
  t.eventIndex.set(e->getID(), static_cast<std::uint32_t>(t.events.size()));
  t.events.push_back(e);
}

PropSlot& slotByName(COSClass* cls, COSID name) {
  ClassTables& t = cls->tables();
  std::uint32_t* i = t.propertyIndex.find(name);
  if (!i) throw Error(vcos::msg::UnknownProperty, name.str(), cls->getName());
  return t.properties[*i];
}

void applyCustomSet(COSClass* cls, COSID name) {
  PropSlot& s = slotByName(cls, name);
  vcos::bumpPropertyRouteEpoch();
  s.customSet = cls->tables().metaInfo;
  s.route |= kRouteCustomSet;
}

void applyCustomGet(COSClass* cls, COSID name) {
  PropSlot& s = slotByName(cls, name);
  vcos::bumpPropertyRouteEpoch();
  s.customGet = cls->tables().metaInfo;
  s.route |= kRouteCustomGet;
  cls->tables().anyCustomGet = true;
}

void finalizeClass(COSClass* c) {
  ClassTables& t = c->tables();
  t.ancestry.push_back(c);
  for (COSClass* s : t.superclasses)
    for (COSClass* a : s->tables().ancestry)
      if (std::find(t.ancestry.begin(), t.ancestry.end(), a) == t.ancestry.end()) t.ancestry.push_back(a);
  // Every id that names a block gets its key once (interpreter thread, like
  // the rest of class building).
  static std::uint32_t blockKeys = 0;
  auto giveKey = [](COSID id) {
    if (id.entry() && !id.entry()->blockKey) id.entry()->blockKey = ++blockKeys;
  };
  for (std::uint32_t i = 0; i < t.ancestry.size(); ++i) {
    giveKey(t.ancestry[i]->getID());
    t.blockSlot.add(t.ancestry[i]->getID(), BlockSlot{i});
    if (COSID alias = blockAliasOf(t.ancestry[i]->getID())) {
      giveKey(alias);
      t.blockSlot.add(alias, BlockSlot{i});
    }
  }
  t.constructorId = COSID(vcos::nameresolution::getBaseClassNameFromFullName(c->getID().str()));
  t.state = ClassTables::State::SlotsReady;

  // Own members first (they override), then the inherited ones in ancestry order.
  for (auto& p : t.ownProperties) insertProperty(t, PropSlot{static_cast<COSPropInfo*>(p.get())});
  for (COSClass* s : t.superclasses)
    for (const PropSlot& slot : s->tables().properties)
      if (!t.propertyIndex.find(slot.property->getID())) insertProperty(t, slot);
  for (auto& m : t.ownMethods) insertMethod(t, static_cast<COSMethodInfo*>(m.get()), false);
  for (COSClass* s : t.superclasses)
    for (const MethodGroup& g : s->tables().methods)
      for (COSMethodInfo* m : g.candidates) insertMethod(t, m, false);
  for (auto& e : t.ownEvents) insertEvent(t, static_cast<COSEventInfo*>(e.get()), true);
  for (COSClass* s : t.superclasses)
    for (COSEventInfo* e : s->tables().events) insertEvent(t, e, false);
  for (COSID name : std::exchange(t.pendingCustomSet, {})) applyCustomSet(c, name);
  for (COSID name : std::exchange(t.pendingCustomGet, {})) applyCustomGet(c, name);
  markClassListenedSlots(t);

  // Objects of this (meta) class that were made before its slots existed.
  for (COSInterface* o : std::exchange(t.pendingInstances, {})) ObjectOps::bindToClass(o, c);
  t.state = ClassTables::State::Ready;
}

}  // namespace
}  // namespace vcos::internal

using namespace vcos::internal;

COSClass::COSClass(COSID id, COSClassInfo* info, COSPackage* package)
    : COSInterface(COSKind::Class),
      id_(id),
      info_(info),
      package_(package),
      privateClient_(this),
      tables_(std::make_unique<ClassTables>()) {}

COSClass::~COSClass() {
  vcos::bumpPropertyRouteEpoch();
  ++vcos::internal::methodTableEpoch;
}

namespace {

COSClass* buildClass(ClassRegistration& r, COSID id) {
  COSClass* c = ObjectOps::newClass(id, r.info.get(), r.package);
  c->addReference(COSStrongReference);  // the registry's
  r.cls = c;
  COSClass* meta = nullptr;
  try {
    ClassTables& t = c->tables();
    COSID metaId = metaClassId();
    if (auto* custom = dynamic_cast<COSUseCustomMetaData*>(r.info.get())) metaId = custom->getMetaClassClassID();
    meta = metaId == id ? c : COSClass::getClass(metaId);
    auto* metaInfo = meta ? dynamic_cast<COSCustomMetaClass*>(meta->getClassInfo()) : nullptr;
    if (!metaInfo) throw Error(vcos::msg::UnknownMetaClass, id.str(), metaId.str());
    t.metaInfo = metaInfo;
    t.metaPropertyId = metaInfo->getMetaPropertyClassID();
    t.metaMethodId = metaInfo->getMetaMethodClassID();
    t.metaEventId = metaInfo->getMetaEventClassID();
    t.truncationAllowed = r.info->isPropertyTruncationAllowed();
    t.caseInsensitive = r.info->arePropertiesCaseInsensitive();
    ObjectOps::setCustomMeta(c, metaId != metaClassId());
    ObjectOps::bindToClass(c, meta);
    r.info->initializeClass(c, c->getPrivateClient());
    finalizeClass(c);
    if (c->usesCustomMetaClass()) {
      metaInfo->finishPropertyCreation(c);
      metaInfo->finishClassCreation(c);
    }
  } catch (...) {
    r.cls = nullptr;
    if (meta && meta != c) std::erase(meta->tables().pendingInstances, static_cast<COSInterface*>(c));
    c->releaseReference(COSStrongReference);
    throw;
  }
  return c;
}

}  // namespace

COSClass* COSClass::getClass(COSID id) {
  if (!id) return nullptr;
  ensureBuiltins();
  auto& registry = classRegistry();
  auto it = registry.find(id);
  if (it == registry.end()) {
    // Give the package named by the prefix a chance to load the class.
    const std::string& name = id.str();
    auto dot = name.rfind('.');
    if (dot == std::string::npos) return nullptr;
    COSPackage* package = COSPackage::getNamespace(COSID(std::string_view(name).substr(0, dot)));
    if (!package || !package->getNamespaceInfo() ||
        !package->getNamespaceInfo()->attemptToLoadClass(name.c_str() + dot + 1))
      return nullptr;
    it = registry.find(id);
    if (it == registry.end()) return nullptr;
  }
  if (it->second.cls) return it->second.cls;
  return buildClass(it->second, id);
}

COSInterfacePtr COSClass::getClassInterface(COSID id) { return COSInterfacePtr(getClass(id)); }

bool COSClass::isSubclassOf(COSID id) const noexcept {
  const ClassTables& t = *tables_;
  if (t.ancestry.empty()) {  // still initializing
    if (id == id_) return true;
    for (COSClass* s : t.superclasses)
      if (s->isSubclassOf(id)) return true;
    return false;
  }
  for (COSClass* a : t.ancestry)
    if (a->id_ == id) return true;
  return false;
}

bool COSClass::isSubclassOf(const COSClass* other) const noexcept { return other && isSubclassOf(other->id_); }
bool COSClass::isAbstract() const { return info_->isAbstract() || info_->classIsAbstract(); }
bool COSClass::isSealed() const { return info_->isSealed(); }
const std::vector<COSClass*>& COSClass::getSuperclasses() const noexcept { return tables_->superclasses; }
const std::vector<COSClass*>& COSClass::getAncestry() const noexcept { return tables_->ancestry; }

void COSClass::getProperties(COSIterator& out) const { out = COSIterator(const_cast<COSClass*>(this), IteratorProperties); }
void COSClass::getMethods(COSIterator& out) const { out = COSIterator(const_cast<COSClass*>(this), IteratorMethods); }
void COSClass::getEvents(COSIterator& out) const { out = COSIterator(const_cast<COSClass*>(this), IteratorEvents); }
std::size_t COSClass::getPropertyCount() const noexcept { return tables_->properties.size(); }
COSPropInfo* COSClass::getPropertyAt(std::size_t i) const noexcept {
  return i < tables_->properties.size() ? tables_->properties[i].property : nullptr;
}

COSPropInfo* COSClass::findPropertyExact(COSID name) const noexcept {
  const std::uint32_t* i = tables_->propertyIndex.find(name);
  return i ? tables_->properties[*i].property : nullptr;
}

namespace vcos::internal {
// Shared with the instance look-up (dynamic properties).
COSPropInfo* matchByPrefix(const std::vector<COSPropInfo*>& candidates, COSID name, const char* className) {
  const std::string& query = name.folded().str();
  std::vector<COSPropInfo*> matches;
  for (COSPropInfo* p : candidates) {
    const std::string& f = p->getID().folded().str();
    if (f.size() > query.size() && f.compare(0, query.size(), query) == 0) matches.push_back(p);
  }
  if (matches.size() <= 1) return matches.empty() ? nullptr : matches.front();
  COSPropInfo* preferred = nullptr;
  int preferredCount = 0;
  for (COSPropInfo* p : matches)
    if (p->isNeverAmbiguous()) {
      preferred = p;
      ++preferredCount;
    }
  if (preferredCount == 1) return preferred;
  std::string names;
  for (COSPropInfo* p : matches) {
    if (!names.empty()) names += ", ";
    names += p->getName();
  }
  throw Error(vcos::msg::AmbiguousPropertyName, name.str(), className, names);
}
}  // namespace vcos::internal

COSPropInfo* COSClass::findProperty(COSID name) const {
  if (!name) return nullptr;
  const ClassTables& t = *tables_;
  if (const std::uint32_t* i = t.propertyIndex.find(name)) return t.properties[*i].property;
  if (t.caseInsensitive)
    if (const std::uint32_t* i = t.foldedPropertyIndex.find(name.folded())) return t.properties[*i].property;
  if (!t.truncationAllowed) return nullptr;
  std::vector<COSPropInfo*> all;
  all.reserve(t.properties.size());
  for (const PropSlot& s : t.properties) all.push_back(s.property);
  return matchByPrefix(all, name, getName());
}

COSMethodInfo* COSClass::findMethod(COSID name) const noexcept {
  const std::uint32_t* i = tables_->methodIndex.find(name);
  return i ? tables_->methods[*i].candidates.front() : nullptr;
}

COSMethodInfo* COSClass::findMethod(COSID name, bool staticOrInstance, bool withHidden,
                                    const COSClient* client) const noexcept {
  const std::uint32_t* i = tables_->methodIndex.find(name);
  if (!i) return nullptr;
  for (COSMethodInfo* m : tables_->methods[*i].candidates) {
    if (m->isStatic() && !staticOrInstance) continue;
    if (!withHidden && !m->isVisible()) continue;
    if (client && !vcos::internal::admits(m->getMemberAccess(), m->getExtendedAccess(), m->getDefiningClass(), client))
      continue;
    return m;
  }
  return nullptr;
}

COSEventInfo* COSClass::findEvent(COSID name) const noexcept {
  const std::uint32_t* i = tables_->eventIndex.find(name);
  return i ? tables_->events[*i] : nullptr;
}

const PropSlot* COSClass::findSlot(const COSPropInfo* property) const noexcept {
  const std::uint32_t* i = tables_->propertyIndex.find(property->getID());
  if (!i) return nullptr;
  const PropSlot& s = tables_->properties[*i];
  return s.property == property ? &s : nullptr;
}

bool COSClass::isCustomSetOn(const COSPropInfo* property) const noexcept {
  const PropSlot* s = findSlot(property);
  return s && s->customSet != nullptr;
}

bool COSClass::isCustomGetOn(const COSPropInfo* property) const noexcept {
  const PropSlot* s = findSlot(property);
  return s && s->customGet != nullptr;
}

void COSClass::addSuperclass(COSID id, bool first, int, int) {
  ClassTables& t = *tables_;
  assert(t.state == ClassTables::State::Initializing && "superclasses are added in initializeClass");
  COSClass* s = getClass(id);
  if (!s) throw Error(vcos::msg::UnknownClass, id.str());
  if (s == this || s->tables_->state == ClassTables::State::Initializing)
    throw Error(vcos::msg::CircularSuperclass, getName(), id.str());
  if (s->info_->isSealed()) throw Error(vcos::msg::SealedSuperclass, getName(), s->getName());
  const ClassTables& st = *s->tables_;
  if (st.closedList && std::find(st.allowedSubclasses.begin(), st.allowedSubclasses.end(), id_) == st.allowedSubclasses.end())
    throw Error(vcos::msg::NotAllowedSubclass, getName(), s->getName());
  if (std::find(t.superclasses.begin(), t.superclasses.end(), s) != t.superclasses.end()) return;
  if (first)
    t.superclasses.insert(t.superclasses.begin(), s);
  else
    t.superclasses.push_back(s);
}

void COSClass::addAllowedSubclass(COSID id) {
  tables_->closedList = true;
  tables_->allowedSubclasses.push_back(id);
}

void COSClass::addProperty(COSPropInfo* info) {
  assert(info && "addProperty needs a property");
  ClassTables& t = *tables_;
  COSInterfacePtr owned(info);
  ObjectOps::setMemberIdentity(info, COSID(info->getName()), this);
  if (COSClass* meta = getClass(t.metaPropertyId)) ObjectOps::bindToClass(info, meta);
  t.ownProperties.push_back(owned);
  if (t.state != ClassTables::State::Initializing) {
    insertProperty(t, PropSlot{info});
    markClassListenedSlots(t);
  }
}

void COSClass::addMethod(COSMethodInfo* info) {
  assert(info && "addMethod needs a method");
  ClassTables& t = *tables_;
  COSInterfacePtr owned(info);
  info->id_ = COSID(info->getName());
  info->definingClass_ = this;
  if (COSClass* meta = getClass(t.metaMethodId)) ObjectOps::bindToClass(info, meta);
  t.ownMethods.push_back(owned);
  if (t.state != ClassTables::State::Initializing) insertMethod(t, info, true);
}

void COSClass::addEvent(COSEventInfo* info) {
  assert(info && "addEvent needs an event");
  ClassTables& t = *tables_;
  COSInterfacePtr owned(info);
  info->id_ = COSID(info->getName());
  info->definingClass_ = this;
  if (COSClass* meta = getClass(t.metaEventId)) ObjectOps::bindToClass(info, meta);
  t.ownEvents.push_back(owned);
  if (t.state != ClassTables::State::Initializing) insertEvent(t, info, true);
}

COSDataTypePtr COSClass::validatePropertyType(COSID, COSID typeId) {
  COSDataTypePtr type = COSTypeRepository::getType(typeId);
  if (!type) throw Error(vcos::msg::UnknownType, typeId.str());
  return type;
}

void COSClass::notifyInstanceAllocated(COSInterface*) noexcept { ++allocatedInstances_; }

void COSClass::setPropertyAttribute(COSID propertyName, COSID attributeName, COSValue value) {
  COSPropInfo* p = findPropertyExact(propertyName);
  if (!p)
    for (auto& own : tables_->ownProperties)
      if (static_cast<COSPropInfo*>(own.get())->getID() == propertyName) p = static_cast<COSPropInfo*>(own.get());
  if (!p) throw Error(vcos::msg::UnknownProperty, propertyName.str(), getName());
  COSClass* meta = p->getClass();
  COSPropInfo* attribute = meta ? meta->findPropertyExact(attributeName) : nullptr;
  if (!attribute) throw Error(vcos::msg::UnknownProperty, attributeName.str(), meta ? meta->getName() : "");
  COSCustomMetaClass::setPropertyValue(p, attribute, value);
}

void COSCustomMetaClass::turnOnCustomSet(COSClass* cls, COSID propertyName) {
  assert(cls && "turnOnCustomSet needs a class");
  if (cls->tables().state == ClassTables::State::Initializing) {
    cls->tables().pendingCustomSet.push_back(propertyName);
    return;
  }
  applyCustomSet(cls, propertyName);
}

void COSCustomMetaClass::turnOnCustomGet(COSClass* cls, COSID propertyName) {
  assert(cls && "turnOnCustomGet needs a class");
  if (cls->tables().state == ClassTables::State::Initializing) {
    cls->tables().pendingCustomGet.push_back(propertyName);
    return;
  }
  applyCustomGet(cls, propertyName);
}
