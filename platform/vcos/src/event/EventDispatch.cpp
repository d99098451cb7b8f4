// notifyEvent: the listeners of the instance and the class listeners of every
// class in its ancestry, higher priority first (class listeners before
// instance listeners of the same priority, each in the order added; a class's
// first-instance listeners come first among the instance's own). The list
// is taken before the first callback, so listeners may add or remove
// listeners, or delete the source, while it runs; a removed listener is
// skipped, and once the source is destroyed no further listener runs (except
// for "ObjectBeingDestroyed" itself, which fires during deletion).
#include <algorithm>

#include <boost/container/small_vector.hpp>

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClient.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/ObjectEvents.h"
#include "vcos/PropertyRouteEpoch.h"

using foundation::core::except::Error;
using vcos::internal::ObjectOps;

namespace {

struct Pending {
  COSInterfacePtr listener;
  int priority;
  int rank;  // 0 class, 1 instance
  std::uint64_t sequence;
};

// Gathers the entry of `cls` for `eventId` again: the class's event and the
// class listeners of its ancestry on it.
[[gnu::noinline]] vcos::internal::AncestryListeners& gatherAncestryListeners(const COSClass* cls, COSID eventId) {
  using vcos::internal::classListenerEpoch;
  auto& cache = cls->tables().ancestryListeners;
  vcos::internal::AncestryListeners* entry = cache[0].eventId == eventId ? &cache[0] : &cache[1];
  if (entry->eventId != eventId && cache[0].epoch == 0) entry = &cache[0];
  entry->eventId = eventId;
  entry->event = cls->findEvent(eventId);
  const COSEventInfo* e = entry->event;
  entry->publicSends = !e || vcos::internal::admits(e->getSendAccess(), e->getExtendedSendAccess(),
                                                    e->getDefiningClass(), COSGetPublicClient());
  entry->listeners.clear();
  entry->quietEpoch = 0;
  for (COSClass* a : cls->tables().ancestry)
    if (a->tables().classListenerCount)
      for (const auto& [id, list] : a->tables().classListeners)
        if (id == eventId)
          for (const auto& l : list) entry->listeners.push_back(static_cast<const COSListener*>(l.listener.get()));
  entry->epoch = classListenerEpoch;
  return *entry;
}

// The class listeners of the ancestry of `cls` on `eventId`, with the
// class's event of that id, gathered again only when some class listener or
// event changed since.
[[gnu::always_inline]] inline vcos::internal::AncestryListeners& ancestryListeners(const COSClass* cls,
                                                                                   COSID eventId) {
  auto& cache = cls->tables().ancestryListeners;
  vcos::internal::AncestryListeners* entry = cache[0].eventId == eventId ? &cache[0] : &cache[1];
  if (entry->eventId == eventId && entry->epoch == vcos::internal::classListenerEpoch) return *entry;
  return gatherAncestryListeners(cls, eventId);
}

[[gnu::noinline]] void askQuiet(const COSClass* cls, vcos::internal::AncestryListeners& entry, std::uint64_t epoch) {
  entry.quiet = std::none_of(entry.listeners.begin(), entry.listeners.end(),
                             [cls](const COSListener* l) { return l->mayRunForInstancesOf(cls); });
  entry.quietEpoch = epoch;
}

// Whether no listener of `entry` would run for an instance of `cls` without
// extras (no listener of its own, no property added at run time): asked of
// the listeners' ops once per class while no class's properties change.
inline bool quietWithoutExtras(const COSClass* cls, vcos::internal::AncestryListeners& entry) {
  if (entry.listeners.empty()) return true;
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (entry.quietEpoch != epoch) askQuiet(cls, entry, epoch);
  return entry.quiet;
}

[[noreturn, gnu::cold, gnu::noinline]] void refuseSend(COSID eventId, const COSClass* cls) {
  throw Error(vcos::msg::EventAccessDenied, eventId.str(), cls->getName());
}

// The general path of notifyEvent: every listener on the event, in order.
// Apart from the check that answers most notifications, so that those keep
// a small frame.
[[gnu::noinline]] void dispatchEvent(COSInterface* self, COSID eventId, COSEventData* eventData) {
  // Most notifications reach one or two listeners: no heap list for them.
  // One walk of the ancestry collects them; classes without class
  // listeners are passed over by their count.
  boost::container::small_vector<Pending, 4> pending;
  if (COSClass* cls = self->getClass())
    for (COSClass* a : cls->tables().ancestry)
      if (a->tables().classListenerCount)
        for (const auto& [id, list] : a->tables().classListeners)
          if (id == eventId)
            for (const auto& l : list)
              pending.push_back({l.listener, l.priority, l.firstOfInstance ? 1 : 0, l.firstOfInstance ? 0 : l.sequence});
  if (const vcos::internal::InstanceExtras* x = ObjectOps::extrasIfAny(self))
    for (const auto& e : x->listeners)
      if (!e.property && e.eventId == eventId) pending.push_back({e.listener, e.priority, 1, e.sequence});
  // Nothing is dispatched (no data, no hold, no listener call) when no
  // listener would do anything: the "InstanceCreated" listener that runs
  // CreateFcn meets an empty CreateFcn on nearly every new object. Asked
  // before any runs, so no listener's effect can change another's answer.
  if (std::none_of(pending.begin(), pending.end(), [self](const Pending& p) {
        return static_cast<const COSListener*>(p.listener.get())->mayRunFor(self);
      }))
    return;
  const auto before = [](const Pending& a, const Pending& b) {
    if (a.priority != b.priority) return a.priority > b.priority;
    if (a.rank != b.rank) return a.rank < b.rank;
    return a.sequence < b.sequence;
  };
  if (pending.size() > 1) std::stable_sort(pending.begin(), pending.end(), before);

  // Data is made only when some listener reads it: the "InstanceCreated"
  // listener that runs CreateFcn, reached by every new graphics object,
  // does not.
  COSInterfacePtr ownData;
  if (!eventData && std::any_of(pending.begin(), pending.end(), [](const Pending& p) {
        return static_cast<const COSListener*>(p.listener.get())->readsEventData();
      })) {
    ownData = COSInterfacePtr(new COSEventData(self, eventId));
    eventData = static_cast<COSEventData*>(ownData.get());
  }
  COSInterfacePtr holdMemory(self, COSWeakReference);
  if (eventData) eventData->incrementNotifyCount();
  struct Done {
    COSEventData* d;
    ~Done() {
      if (d) d->decrementNotifyCount();
    }
  } done{eventData};
  static const COSID beingDestroyed("ObjectBeingDestroyed");
  for (Pending& p : pending) {
    if (self->isDestroyed() && eventId != beingDestroyed) break;
    static_cast<COSListener*>(p.listener.get())->fire(self, eventData);
  }
}

}  // namespace

bool vcos::internal::sendsToNoOneSlow(const COSClass* cls, COSID eventId) noexcept {
  AncestryListeners& entry = ancestryListeners(cls, eventId);
  return entry.publicSends && quietWithoutExtras(cls, entry);
}

void COSInterface::notifyEvent(const COSClient* client, COSID eventId, COSEventData* eventData) {
  checkValid();
  // The class's event and its listeners, kept per class for the events sent
  // to every instance.
  vcos::internal::AncestryListeners* entry = class_ ? &ancestryListeners(class_, eventId) : nullptr;
  if (entry && kind_ == COSKind::Instance)
    if (COSEventInfo* e = entry->event)
      if (!vcos::internal::admits(e->getSendAccess(), e->getExtendedSendAccess(), e->getDefiningClass(), client))
        refuseSend(eventId, class_);
  // Nothing is dispatched when no listener would run: no class listener of
  // the ancestry may run for this object (asked without a walk of the
  // ancestry) and the object has none of its own on the event. This is the
  // case of nearly every creation and deletion.
  if (entry) {
    if (!extras_ && quietWithoutExtras(class_, *entry)) return;
    const bool ownListener = extras_ && std::any_of(extras_->listeners.begin(), extras_->listeners.end(),
                                                    [&](const auto& e) { return !e.property && e.eventId == eventId; });
    if (!ownListener) {
      // Each asked only while no class listener has changed and the entry
      // still holds this event: a mayRunFor that sends events or removes
      // listeners leaves the answer to the general path, which holds its
      // listeners.
      const std::uint64_t epoch = vcos::internal::classListenerEpoch;
      bool mayRun = false;
      for (std::size_t k = 0; k < entry->listeners.size() && !mayRun; ++k)
        mayRun = vcos::internal::classListenerEpoch != epoch || entry->eventId != eventId ||
                 entry->listeners[k]->mayRunFor(this);
      if (!mayRun) return;
    }
  }
  dispatchEvent(this, eventId, eventData);
}

void COSInterface::addListener(const COSClient* client, COSID eventId, COSListener* listener, int priority) {
  assert(listener && "addListener needs a listener");
  checkValid();
  static std::uint64_t sequence = 0;
  if (class_ && kind_ == COSKind::Instance)
    if (COSEventInfo* e = class_->findEvent(eventId)) {
      if (!vcos::internal::admits(e->getListenAccess(), e->getExtendedListenAccess(), e->getDefiningClass(), client))
        throw Error(vcos::msg::EventAccessDenied, eventId.str(), class_->getName());
      e->notifyAdd(this, listener);
    }
  ObjectOps::extras(this).listeners.push_back(
      {eventId, nullptr, COSPropertyEvent::PreSet, COSInterfacePtr(listener), priority, ++sequence});
}

void COSInterface::addListener(COSID eventId, COSListener* listener, int priority) {
  addListener(COSGetPublicClient(), eventId, listener, priority);
}

bool vcos::isValidObjectEvent(COSID eventId, COSConnectivity) noexcept {
  static const COSID beingDestroyed("ObjectBeingDestroyed");
  return eventId == beingDestroyed;
}

void COSInterface::removeListener(COSID eventId, const COSListener* listener) {
  if (!extras_) return;
  auto& list = extras_->listeners;
  for (auto it = list.begin(); it != list.end(); ++it) {
    if (it->property || it->eventId != eventId || it->listener.get() != listener) continue;
    COSInterfacePtr keep = it->listener;
    static_cast<COSListener*>(keep.get())->markRemoved();
    list.erase(it);
    if (class_ && kind_ == COSKind::Instance)
      if (COSEventInfo* e = class_->findEvent(eventId)) e->notifyRemove(this, static_cast<COSListener*>(keep.get()));
    return;
  }
}
