// Listener objects and event data objects: their blocks and properties, the
// op that runs a listener object's callback, the listener classes'
// constructors, and reading their inputs (shared with addlistener).
#include "vcos/src/builtin/Listeners.h"

#include <utility>

#include "foundation/core/except/Error.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSClassInfo.h"
#include "vcos/ObjectEvents.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSCasts.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSPropCPPT.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/builtin/Callbacks.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/ObjectOps.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

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
  op = nullptr;
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
// object (weakly until keepWithSources), and tells it when the COSListener
// goes.
class ListenerObjectOp final : public COSListenerOp {
 public:
  explicit ListenerObjectOp(COSInterface* self) : self_(self, COSWeakReference) {}
  ~ListenerObjectOp() override {
    if (ListenerBlock* block = self_ ? listenerBlock(self_.get()) : nullptr) {
      block->listener = nullptr;
      block->op = nullptr;
    }
  }
  void callback(COSInterface* source, COSEventData* data) override { runListener(self_, source, data); }
  void holdStrongly() { self_.setReferenceType(COSStrongReference); }

 private:
  COSInterfacePtr self_;
};

// ---- the inputs of a listener ----------------------------------------------

struct AttachRequest {
  bool propertyListener = false;
  COSID eventName;                                             // event listeners
  COSPropertyEvent propertyEvent = COSPropertyEvent::PostSet;  // property listeners
  std::vector<ListenerBlock::Attachment> attachments;         // live sources, found properties
  const vxArray* callback = nullptr;
};

bool isTextArg(const vxArray* a) {
  return a && ((vxIsChar(a) && vxGetM(a) == 1) || (vxIsString(a) && vxIsScalar(a)));
}

std::vector<COSInterfacePtr> liveSources(const vxArray* handles) {
  if (!omIsVCOS(handles) || vxIsEmpty(handles)) throw Error("VANTEL:vcos:addlistener:NoSource");
  std::vector<COSInterfacePtr> sources;
  const COSInterfacePtr* e = vxGetObjectElements(handles);
  for (vxSize i = 0, n = vxGetNumberOfElements(handles); i < n; ++i) {
    if (!alive(e[i])) throw Error("VANTEL:vcos:InvalidHandle");
    sources.push_back(e[i]);
  }
  return sources;
}

COSPropertyEvent propertyEventOf(const vxArray* name) {
  if (!isTextArg(name)) throw Error("VANTEL:vcos:addlistener:BadPropertyEvent", "");
  const std::string s = vxArrayToStdString(name);
  if (s == "PreSet") return COSPropertyEvent::PreSet;
  if (s == "PostSet") return COSPropertyEvent::PostSet;
  if (s == "PreGet") return COSPropertyEvent::PreGet;
  if (s == "PostGet") return COSPropertyEvent::PostGet;
  throw Error("VANTEL:vcos:addlistener:BadPropertyEvent", s);
}

// Property names from text, a cell of text, or an array of property objects.
std::vector<COSID> propertyNames(const vxArray* props) {
  std::vector<COSID> names;
  if (isTextArg(props)) {
    names.emplace_back(vxArrayToStdString(props));
  } else if (vxIsCell(props)) {
    for (vxSize i = 0, n = vxGetNumberOfElements(props); i < n; ++i) {
      const vxArray* c = vxGetCell(props, i);
      if (!isTextArg(c)) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
      names.emplace_back(vxArrayToStdString(c));
    }
  } else if (omIsVCOS(props)) {
    const COSInterfacePtr* e = vxGetObjectElements(props);
    for (vxSize i = 0, n = vxGetNumberOfElements(props); i < n; ++i) {
      const COSPropInfo* p = cosiToProp(e[i].get());
      if (!p) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
      names.push_back(p->getID());
    }
  } else {
    throw Error("VANTEL:vcos:addlistener:BadPropertyList");
  }
  if (names.empty()) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
  return names;
}

// Checks everything the attaching needs, so that nothing is attached when
// an input is wrong. The access rules are the core's, which checks them again
// on attaching.
AttachRequest readListenerArguments(const COSClient* client, int nrhs, const vxArray* prhs[]) {
  if (nrhs != 3 && nrhs != 4) throw Error("VANTEL:vcos:addlistener:BadArguments");
  const std::vector<COSInterfacePtr> sources = liveSources(prhs[0]);
  AttachRequest request;
  if (nrhs == 3) {
    if (!isTextArg(prhs[1])) throw Error("VANTEL:vcos:addlistener:BadEventName");
    request.eventName = COSID(vxArrayToStdString(prhs[1]));
    for (const COSInterfacePtr& s : sources) {
      const COSEventInfo* event = s->getClass()->findEvent(request.eventName);
      if (!event) {
        // Events every object sends without declaring them, such as
        // "ObjectBeingDestroyed", are open to all.
        const COSClassInfo* info = s->getClass()->getClassInfo();
        if (!vcos::isValidObjectEvent(request.eventName, info ? info->getConnectivity() : COSConnectTree))
          throw Error("VANTEL:vcos:addlistener:UnknownEvent", request.eventName.str(), s->getClass()->getName());
      } else if (!vcos::internal::admits(event->getListenAccess(), event->getExtendedListenAccess(),
                                  event->getDefiningClass(), client))
        throw Error("VANTEL:vcos:addlistener:EventAccessDenied", request.eventName.str(), s->getClass()->getName());
      request.attachments.push_back({s, nullptr});
    }
    request.callback = prhs[2];
  } else {
    request.propertyListener = true;
    const std::vector<COSID> names = propertyNames(prhs[1]);
    request.propertyEvent = propertyEventOf(prhs[2]);
    const bool getEvent =
        request.propertyEvent == COSPropertyEvent::PreGet || request.propertyEvent == COSPropertyEvent::PostGet;
    for (const COSInterfacePtr& s : sources) {
      for (COSID name : names) {
        const COSPropInfo* p = s->findPropertyInfo(name);
        if (!p) throw Error("VANTEL:vcos:addlistener:UnknownProperty", name.str(), s->getClass()->getName());
        if (!(getEvent ? p->isListenerGetAllowed() : p->isListenerSetAllowed()))
          throw Error("VANTEL:vcos:addlistener:PropertyNotObservable", p->getName(), vxArrayToStdString(prhs[2]));
        if (!vcos::internal::admits(p->getMemberGetAccess(), p->getExtendedGetAccess(), p->getDefiningClass(), client))
          throw Error("VANTEL:vcos:PropertyListenDenied", p->getName(), s->getClass()->getName());
        request.attachments.push_back({s, p});
      }
    }
    request.callback = prhs[3];
  }
  if (!isCallback(request.callback)) throw Error("VANTEL:vcos:addlistener:BadCallback");
  return request;
}

// Makes `object` (a new listener object) listen as the request says.
void attach(const COSInterfacePtr& object, const AttachRequest& request, const COSClient* client) {
  ListenerBlock* block = listenerBlock(object.get());
  assert(block && "a listener object without its block");
  block->eventName = request.eventName;
  block->propertyEvent = request.propertyEvent;
  block->forProperties = request.propertyListener;
  block->setCallback(const_cast<vxArray*>(request.callback));

  auto* op = new ListenerObjectOp(object.get());
  COSInterfacePtr listener = COSListener::createListener(op);
  COSListener* l = COSListener::toListener(listener);
  block->listener = l;
  block->op = op;
  for (const ListenerBlock::Attachment& a : request.attachments) {
    block->attachments.push_back({COSInterfacePtr(a.source.get(), COSWeakReference), a.property});
    if (a.property)
      a.source->addPropertyListener(client, request.propertyEvent, a.property, l);
    else
      a.source->addListener(client, request.eventName, l);
  }
}

// The constructors: event.listener(source, eventName, callback) and
// event.proplistener(source, properties, propertyEvent, callback). As for
// every constructor, the new object is element 0 of the array in plhs[0].
void constructListener(const COSClient* client, int&, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  attach(omGetArrayElement(plhs[0], 0), readListenerArguments(client, nrhs, prhs), client);
}

constexpr Method::Row kListenerMethods[] = {
    {"listener", &constructListener, "A listener on an event of the source objects; only variables keep it.", 3, 3,
     1, false},
};
constexpr Method::Row kPropListenerMethods[] = {
    {"proplistener", &constructListener,
     "A listener on property events of named properties of the source objects; only variables keep it.", 4, 4, 1,
     false},
};

}  // namespace

void addListenerMembers(COSClass* cls) {
  addProperty<ListenerBlock, bool>(cls, "Enabled", "logical scalar", &ListenerBlock::enabled,
                                   &ListenerBlock::setEnabled);
  addProperty<ListenerBlock, vxArray*>(cls, "Source", "any", &ListenerBlock::sourceArray, nullptr);
  addProperty<ListenerBlock, vxArray*>(cls, "EventName", "any", &ListenerBlock::eventNameArray, nullptr);
  addProperty<ListenerBlock, vxArray*>(cls, "Callback", "any", &ListenerBlock::callbackArray,
                                       &ListenerBlock::setCallback);
  Method::addAll(cls, kListenerMethods);
}

void addPropListenerMembers(COSClass* cls) { Method::addAll(cls, kPropListenerMethods); }

COSInterfacePtr constructListenerObject(const COSClient* client, int nrhs, const vxArray* prhs[]) {
  if (nrhs != 3 && nrhs != 4) throw Error("VANTEL:vcos:addlistener:BadArguments");
  COSClass* cls = COSClass::getClass(nrhs == 4 ? names().propListener : names().listener);
  COSValue inputs[4];
  for (int i = 0; i < nrhs; ++i) inputs[i] = COSValue(prhs[i]);
  return cls->createInstance(client, nrhs, inputs);
}

void keepWithSources(const COSInterfacePtr& listenerObject) {
  // No op: every source went already (deleted by a listener of the
  // construction), so there is nothing to hold it.
  ListenerBlock* block = listenerBlock(listenerObject.get());
  if (block && block->op) static_cast<ListenerObjectOp*>(block->op)->holdStrongly();
}

}  // namespace vcos::builtin

COSInterfacePtr vcos::eventDataObject(COSInterface* source, COSEventData* data) {
  if (!data) return nullptr;
  return builtin::describeEvent(source, data, data->getProperty() != nullptr, data->getEventName());
}

void vcos::bindEventData(COSEventData* data, COSClass* cls) {
  if (!cls->isSubclassOf(builtin::names().eventData)) throw Error("VANTEL:vcos:NotEventDataClass", cls->getName());
  vcos::internal::ObjectOps::bindToClass(data, cls);
  auto* block = static_cast<builtin::EventDataBlock*>(data->getInstanceData(builtin::names().eventData));
  block->source = data->getSourceWeak();
  block->eventName = data->getEventName();
}
