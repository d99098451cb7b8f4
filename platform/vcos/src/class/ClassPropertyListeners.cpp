// Class-level property listeners: listeners on a property event of a named
// property of every instance of a class and its subclasses. The client path
// learns of them through the kRouteClassListeners bit of the property's slot
// in each class, so a get or set of an unobserved property pays nothing more
// than its one route test. The bits are set when a listener is added, for
// the class and every subclass built so far; classes built later mark
// themselves from their ancestry (finalizeClass).
#include <algorithm>

#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSListener.h"
#include "vcos/PropertyRouteEpoch.h"

namespace vcos::internal {

namespace {

bool listenedInAncestry(const ClassTables& t, COSID property) noexcept {
  for (const COSClass* a : t.ancestry)
    for (const ClassPropertyListener& l : a->tables().propertyListeners)
      if (l.property == property) return true;
  return false;
}

void markSlot(ClassTables& t, COSID property, bool listened) noexcept {
  std::uint32_t* i = t.propertyIndex.find(property);
  if (!i) return;
  PropSlot& s = t.properties[*i];
  vcos::bumpPropertyRouteEpoch();
  s.route = static_cast<unsigned char>(listened ? s.route | kRouteClassListeners : s.route & ~kRouteClassListeners);
}

// Brings the bit of `property` up to date in `base` and every built subclass.
void refreshMarks(const COSClass* base, COSID property) noexcept {
  for (auto& [id, r] : classRegistry()) {
    COSClass* c = r.cls;
    if (!c || c->tables().state == ClassTables::State::Initializing || !c->isSubclassOf(base)) continue;
    markSlot(c->tables(), property, listenedInAncestry(c->tables(), property));
  }
}

}  // namespace

void markClassListenedSlots(ClassTables& t) noexcept {
  vcos::bumpPropertyRouteEpoch();
  bool any = false;
  for (const COSClass* a : t.ancestry) any = any || !a->tables().propertyListeners.empty();
  for (PropSlot& s : t.properties) {
    const bool listened = any && listenedInAncestry(t, s.property->getID());
    s.route = static_cast<unsigned char>(listened ? s.route | kRouteClassListeners : s.route & ~kRouteClassListeners);
  }
}

}  // namespace vcos::internal

using namespace vcos::internal;

void COSClass::addClassPropertyListener(const COSClient* client, COSPropertyEvent kind, const COSPropInfo* property,
                                        COSListener* listener) {
  assert(property && listener && "addClassPropertyListener needs a property and a listener");
  if (!findSlot(property))
    throw foundation::core::except::Error(vcos::msg::PropertyNotOfClass, property->getName(), getName());
  checkPropertyListen(client, kind, property, this);
  static std::uint64_t sequence = 0;
  tables_->propertyListeners.push_back({property->getID(), kind, COSInterfacePtr(listener), ++sequence});
  refreshMarks(this, property->getID());
}

void COSClass::removeClassPropertyListener(COSPropertyEvent kind, const COSPropInfo* property,
                                           const COSListener* listener) {
  auto& list = tables_->propertyListeners;
  const COSID name = property->getID();
  auto it = std::find_if(list.begin(), list.end(), [&](const ClassPropertyListener& l) {
    return l.property == name && l.kind == kind && l.listener.get() == listener;
  });
  if (it == list.end()) return;
  COSInterfacePtr keep = it->listener;
  static_cast<COSListener*>(keep.get())->markRemoved();
  list.erase(it);
  refreshMarks(this, name);
}
