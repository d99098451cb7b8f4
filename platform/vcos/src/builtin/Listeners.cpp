// Listener objects and event data objects: their blocks and properties, the
// op that runs a listener object's callback, and attaching a new listener
// object to its sources.
#include "vcos/src/builtin/Listeners.h"

#include <utility>

#include "foundation/core/except/Error.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropCPPT.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/builtin/Callbacks.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

bool alive(const COSInterfacePtr& p) { return p && !p->isDestroyed() && !p->isBeingDestroyed(); }

ListenerBlock* listenerBlock(COSInterface* object) {
  return static_cast<ListenerBlock*>(object->getInstanceData(names().listener));
}

}  // namespace

// ---- listener block --------------------------------------------------------

void ListenerBlock::teardown(COSInterface* /*self*/) {
  COSListener* l = std::exchange(listener, nullptr);
  if (!l) return;
  // Marked first: a notification already under way skips it from now on.
  l->markRemoved();
  for (Attachment& a : attachments) {
    if (!alive(a.source)) continue;
    if (a.property)
      a.source->removePropertyListener(propertyEvent, a.property, l);
    else
      a.source->removeListener(eventName, l);
  }
  attachments.clear();
}

bool ListenerBlock::enabled() const {
  return listener && listener->isEnabled();
}

void ListenerBlock::setEnabled(bool on) {
  if (listener) listener->setEnabled(on);
}

vxArray* ListenerBlock::sourceArray() const {
  // A cell of 1-by-1 arrays: the sources may be of unrelated classes.
  matrix::unique_vxArray cell(vxCreateCellMatrix(1, attachments.size()));
  std::size_t i = 0;
  for (const Attachment& a : attachments)
    if (a.source) vxSetCell(cell.get(), i++, omCreateVCOSScalar(a.source));
  return cell.release();
}

vxArray* ListenerBlock::eventNameArray() const {
  return vxCreateString(propertyListener() ? cosPropertyEventName(propertyEvent) : eventName.c_str());
}

vxArray* ListenerBlock::callbackArray() const {
  return callback ? vxCreateSharedDataCopy(callback.get()) : vxCreateDoubleMatrix(0, 0, vxREAL);
}

void ListenerBlock::setCallback(vxArray* value) {
  if (!isCallback(value)) throw Error("VANTEL:vcos:addlistener:BadCallback");
  matrix::unique_vxArray copy(value ? vxCreateSharedDataCopy(value) : nullptr);
  if (copy) vxSetArrayScope(copy.get(), vxSCOPE_PERSISTENT);
  callback.swap(copy);
}

// ---- event data blocks -----------------------------------------------------

vxArray* EventDataBlock::sourceArray() const {
  if (!source) return omCreateVCOSEmpty(names().handle);
  return omCreateVCOSScalar(source);
}

vxArray* EventDataBlock::eventNameArray() const { return vxCreateString(eventName.c_str()); }

vxArray* PropertyEventBlock::affectedObjectArray() const {
  if (!affectedObject) return omCreateVCOSEmpty(names().handle);
  return omCreateVCOSScalar(affectedObject);
}

// ---- members ---------------------------------------------------------------

namespace {

template <class Block, class T>
void addProperty(COSClass* cls, const char* name, const char* type, T (Block::*getter)() const,
                 void (Block::*setter)(T)) {
  cls->addProperty(new COSPropCPPT<Block, T>(cls->getID(), COSID(name), COSDataTypePtr(type), getter, setter,
                                             PublicAccess, setter ? PublicAccess : NoAccess));
}

}  // namespace

void addListenerMembers(COSClass* cls) {
  addProperty<ListenerBlock, bool>(cls, "Enabled", "logical scalar", &ListenerBlock::enabled,
                                   &ListenerBlock::setEnabled);
  addProperty<ListenerBlock, vxArray*>(cls, "Source", "any", &ListenerBlock::sourceArray, nullptr);
  addProperty<ListenerBlock, vxArray*>(cls, "EventName", "any", &ListenerBlock::eventNameArray, nullptr);
  addProperty<ListenerBlock, vxArray*>(cls, "Callback", "any", &ListenerBlock::callbackArray,
                                       &ListenerBlock::setCallback);
}

void addEventDataMembers(COSClass* cls) {
  addProperty<EventDataBlock, vxArray*>(cls, "Source", "any", &EventDataBlock::sourceArray, nullptr);
  addProperty<EventDataBlock, vxArray*>(cls, "EventName", "any", &EventDataBlock::eventNameArray, nullptr);
}

void addPropertyEventMembers(COSClass* cls) {
  addProperty<PropertyEventBlock, vxArray*>(cls, "AffectedObject", "any", &PropertyEventBlock::affectedObjectArray,
                                            nullptr);
}

// ---- running a listener object ---------------------------------------------

namespace {

// The event data object a callback receives. Event data that is already an
// object of an event data class goes as it is; core event data is described
// by a new "event.EventData" or, for property events, "event.PropertyEvent".
COSInterfacePtr describeEvent(COSInterface* source, COSEventData* data, bool propertyEvent, COSID eventName) {
  if (data && data->getClass() && data->getClass()->isSubclassOf(names().eventData)) return COSInterfacePtr(data);
  COSClass* cls = COSClass::getClass(propertyEvent ? names().propertyEvent : names().eventData);
  COSInterfacePtr object = cls->createInstance(COSGetPublicClient());
  auto* block = static_cast<EventDataBlock*>(object->getInstanceData(names().eventData));
  block->eventName = eventName;
  if (propertyEvent) {
    const COSPropInfo* property = data ? data->getProperty() : nullptr;
    // The source of a property event is the property object.
    if (property && property->getClass()) block->source = const_cast<COSPropInfo*>(property);
    auto* pblock = static_cast<PropertyEventBlock*>(object->getInstanceData(names().propertyEvent));
    pblock->affectedObject = source;
  } else {
    block->source = source;
  }
  return object;
}

COSInterfacePtr eventDataObject(COSInterface* source, COSEventData* data, const ListenerBlock& listener) {
  if (listener.propertyListener())
    return describeEvent(source, data, true, COSID(cosPropertyEventName(listener.propertyEvent)));
  return describeEvent(source, data, false, data ? data->getEventName() : listener.eventName);
}

void runListener(const COSInterfacePtr& self, COSInterface* source, COSEventData* data) {
  if (!alive(self)) return;
  ListenerBlock* block = listenerBlock(self.get());
  if (!block || !block->callback) return;
  // The callback may replace itself or delete the listener while it runs.
  matrix::unique_vxArray callback(vxCreateSharedDataCopy(block->callback.get()));
  matrix::unique_vxArray src(omCreateVCOSScalar(COSInterfacePtr(source)));
  matrix::unique_vxArray evt(omCreateVCOSScalar(eventDataObject(source, data, *block)));
  const vxArray* args[] = {src.get(), evt.get()};
  runCallback(callback.get(), 2, args);
}

// The callback of a listener object's COSListener. It holds the listener
// object, and tells it when the COSListener goes.
class ListenerObjectOp final : public COSListenerOp {
 public:
  explicit ListenerObjectOp(COSInterfacePtr self) : self_(std::move(self)) {}
  ~ListenerObjectOp() override {
    if (ListenerBlock* block = self_ ? listenerBlock(self_.get()) : nullptr) block->listener = nullptr;
  }
  void callback(COSInterface* source, COSEventData* data) override { runListener(self_, source, data); }

 private:
  COSInterfacePtr self_;
};

}  // namespace

COSInterfacePtr attachListenerObject(const AttachRequest& request) {
  assert(!request.attachments.empty() && "a listener without sources");
  COSClass* cls = COSClass::getClass(request.propertyListener ? names().propListener : names().listener);
  COSInterfacePtr object = cls->createInstance(COSGetPublicClient());
  ListenerBlock* block = listenerBlock(object.get());
  assert(block && "a listener object without its block");
  block->eventName = request.eventName;
  block->propertyEvent = request.propertyEvent;
  block->forProperties = request.propertyListener;
  block->setCallback(const_cast<vxArray*>(request.callback));

  COSInterfacePtr listener = COSListener::createListener(new ListenerObjectOp(object));
  COSListener* l = COSListener::toListener(listener);
  block->listener = l;
  for (const ListenerBlock::Attachment& a : request.attachments) {
    block->attachments.push_back({COSInterfacePtr(a.source.get(), COSWeakReference), a.property});
    if (a.property)
      a.source->addPropertyListener(request.propertyEvent, a.property, l);
    else
      a.source->addListener(request.eventName, l);
  }
  return object;
}

}  // namespace vcos::builtin

COSInterfacePtr vcos::eventDataObject(COSInterface* source, COSEventData* data) {
  if (!data) return nullptr;
  return builtin::describeEvent(source, data, data->getProperty() != nullptr, data->getEventName());
}
