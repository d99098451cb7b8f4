// Making instances of a class: blocks base first, the constructor method,
// then the "InstanceCreated" class event; and the class listeners that such
// events reach.
#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/Access.h"
#include "vcos/src/core/COSObject.h"
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSListener.h"
#include "vcos/COSMethodInfo.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/FaultInjection.h"
#include "vcos/FirstInstanceListener.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"

using foundation::core::except::Error;
using vcos::internal::ClassTables;
using vcos::internal::COSObject;
using vcos::internal::ObjectOps;

namespace {

const COSID& instanceCreatedId() {
  static const COSID id("InstanceCreated");
  return id;
}

// A fresh instance with its blocks, in one slot where the class's layout is
// known; destroyed again if allocation fails.
COSInterfacePtr makeInstance(COSClass* cls, void* ownBlock) {
  ClassTables& t = cls->tables();
  assert(t.state == ClassTables::State::Ready && "instances need a built class");
  std::size_t n = t.ancestry.size();
  vcos::fault::at(vcos::fault::Point::Allocation);
  // An instance wrapping a block it was given has one block fewer to make:
  // it takes no room and does not set the layout.
  const bool layout = !ownBlock;
  COSObject* o = COSObject::make(layout ? t.blockRoom : 0);
  COSInterfacePtr ref(o);
  ObjectOps::setClass(o, cls);
  std::size_t asked = 0;
  try {
    if (layout && ObjectOps::madeAtOffsets(cls)) {
      // The class's room is known: the blocks are made at their places.
      ObjectOps::makeFixedBlocks(o, &asked);
    } else {
      // The blocks are listed here while they are made; keepBlocks then
      // decides whether the object needs the list.
      std::array<void*, ObjectOps::kMaxFixedBlocks> onStack;
      std::unique_ptr<void*[]> onHeap;
      void** made = onStack.data();
      if (n > onStack.size())
        made = (onHeap = std::make_unique<void*[]>(n)).get();
      else
        std::fill_n(made, n, nullptr);
      ObjectOps::allocateBlocks(o, cls, made, ownBlock, &asked);
      if (layout)
        ObjectOps::keepBlocks(o, made, o->blockRoomBegin(), o->blockRoomEnd());
      else
        ObjectOps::keepBlocks(o, made, nullptr, nullptr);
    }
  } catch (...) {
    // Never alive: dropping the reference must not run deletion.
    ObjectOps::setState(o, ObjectOps::destroyedBit());
    throw;
  }
  if (layout && !t.blockRoomKnown) {
    t.blockRoom = asked <= COSObject::kMaxBlockRoom ? static_cast<std::uint32_t>(asked) : 0;
    t.blockRoomKnown = true;
  }
  return ref;
}

}  // namespace

namespace {

// The 1-by-1 object array that hands a new object to its constructor. One is
// kept per thread and reused: writes to an object array unshare it first, so
// a copy that a constructor kept is never changed by the next reuse. A
// constructor that makes objects itself takes a fresh array for those.
class ConstructorArray {
 public:
  ConstructorArray(COSClass* cls, COSInterface* object) : array_(std::exchange(spare(), nullptr)) {
    const void* classId = cls->getID().entry();
    if (!array_)
      array_ = vxCreateObjectMatrix(1, 1, classId);
    else if (vxGetObjectClassID(array_) != classId)
      vxSetObjectClassID(array_, classId);
    vxGetObjectElements(array_)[0] = object;
  }
  ~ConstructorArray() {
    dropObject();
    vxArray*& slot = spare();
    if (!slot)
      slot = array_;
    else
      vxDestroyArray(array_);
  }
  ConstructorArray(const ConstructorArray&) = delete;
  ConstructorArray& operator=(const ConstructorArray&) = delete;
  vxArray* get() const noexcept { return array_; }
  // Lets go of the object (before it is deleted, as a destroyed array would).
  void dropObject() { vxGetObjectElements(array_)[0].reset(); }

 private:
  static vxArray*& spare() {
    struct Holder {
      vxArray* array = nullptr;
      ~Holder() {
        if (array) vxDestroyArray(array);
      }
    };
    thread_local Holder holder;
    return holder.array;
  }
  vxArray* array_;
};

}  // namespace

namespace {

// Whether a call of the constructor `ctor` of `c` without inputs would reach
// ctor's invoke: it is the only candidate of its name, the client is
// admitted and its signature takes no inputs. Otherwise the call goes the
// general way, which raises what it raises.
bool reachesWithoutInputs(COSClass* c, COSMethodInfo* ctor, const COSClient* client) {
  const ClassTables& t = c->tables();
  const std::uint32_t* i = t.methodIndex.find(t.constructorId);
  if (!i || t.methods[*i].candidates.size() != 1 || t.methods[*i].candidates[0] != ctor) return false;
  if (!vcos::internal::admits(ctor->getMemberAccess(), ctor->getExtendedAccess(), c, client)) return false;
  const COSMethodSignature* sig = ctor->getMethodSignature();
  return !sig || sig->accepts(0, nullptr);
}

// The general way: the constructor `c` defines is called through the client
// path, and finds the new object of `cls` as element 0 of the 1-by-1 object
// array in plhs[0]. A failure deletes the object.
void constructByCall(COSClass* cls, COSClass* c, const COSClient* client, const COSInterfacePtr& object, int nrhs,
                     const COSValue* prhs) {
  ConstructorArray self(cls, object.get());
  COSValue out[1] = {COSValue(self.get())};
  int nlhs = 1;
  try {
    vcos::internal::callMethod(c, c->tables().constructorId, client, nlhs, out, nrhs, prhs);
  } catch (...) {
    if (out[0].asPointer<vxArray>() != self.get()) vxDestroyArray(out[0].asPointer<vxArray>());
    self.dropObject();
    ObjectOps::destroy(object.get(), nullptr);
    throw;
  }
  if (out[0].asPointer<vxArray>() != self.get()) vxDestroyArray(out[0].asPointer<vxArray>());
}

// The constructor of the instances of `cls`: the nearest class of the
// ancestry that defines one runs it. Found again only after a method was
// added to a built class or a class went.
const vcos::internal::ConstructorChoice& constructorOf(COSClass* cls) {
  vcos::internal::ConstructorChoice& choice = cls->tables().constructor;
  if (choice.epoch == vcos::internal::methodTableEpoch) return choice;
  choice = {};
  for (COSClass* c : cls->tables().ancestry) {
    COSMethodInfo* ctor = c->findMethod(c->tables().constructorId);
    if (!ctor || ctor->getDefiningClass() != c) continue;
    choice.definer = c;
    choice.ctor = ctor;
    // Reached for every client: asked with no client at all.
    choice.openWithoutInputs = reachesWithoutInputs(c, ctor, nullptr);
    break;
  }
  choice.epoch = vcos::internal::methodTableEpoch;
  return choice;
}

}  // namespace

COSInterfacePtr COSClass::createInstance(const COSClient* client, int nrhs, const COSValue* prhs) {
  if (isAbstract()) throw Error(vcos::msg::AbstractClass, getName());
  COSInterfacePtr object = makeInstance(this, nullptr);
  // The nearest class of the ancestry that defines a constructor runs it. It
  // finds the new object as element 0 of the 1-by-1 object array in
  // plhs[0]; prhs are the caller's inputs.
  const vcos::internal::ConstructorChoice& choice = constructorOf(this);
  if (COSMethodInfo* ctor = choice.ctor) {
    COSClass* c = choice.definer;
    bool done = false;
    if (nrhs == 0 && (choice.openWithoutInputs || reachesWithoutInputs(c, ctor, client))) {
      try {
        done = ctor->constructWithoutInputs(client, object);
      } catch (...) {
        ObjectOps::destroy(object.get(), nullptr);
        throw;
      }
    }
    if (!done) constructByCall(this, c, client, object, nrhs, prhs);
  }
  // A listener that raises fails the creation: the caller gets the error
  // and no object, so the new object must not stay behind in a tree.
  if (!object->isDestroyed()) {
    try {
      object->notifyEvent(COSGetPublicClient(), instanceCreatedId(), nullptr);
    } catch (...) {
      if (!object->isDestroyed() && !object->isBeingDestroyed()) {
        try {
          ObjectOps::destroy(object.get(), nullptr);
        } catch (...) {
          // The listener's error is the one to report.
        }
      }
      throw;
    }
  }
  return object;
}

COSInterfacePtr COSClass::wrapInstanceData(void* data) { return makeInstance(this, data); }

std::uint64_t vcos::internal::classListenerEpoch = 1;
std::uint64_t vcos::internal::methodTableEpoch = 1;

void COSClass::addClassListener(const COSClient* client, COSID eventId, COSListener* listener, int priority) {
  assert(listener && "addClassListener needs a listener");
  if (COSEventInfo* e = findEvent(eventId))
    if (!vcos::internal::admits(e->getListenAccess(), e->getExtendedListenAccess(), e->getDefiningClass(), client))
      throw Error(vcos::msg::EventAccessDenied, eventId.str(), getName());
  static std::uint64_t sequence = 0;
  auto& lists = tables_->classListeners;
  auto it = std::find_if(lists.begin(), lists.end(), [&](auto& e) { return e.first == eventId; });
  if (it == lists.end()) it = lists.insert(lists.end(), {eventId, {}});
  it->second.push_back({COSInterfacePtr(listener), priority, ++sequence});
  ++tables_->classListenerCount;
  ++vcos::internal::classListenerEpoch;
}

void COSClass::addClassListener(COSID eventId, COSListener* listener, int priority) {
  addClassListener(COSGetPublicClient(), eventId, listener, priority);
}

void vcos::addFirstInstanceListener(COSClass* cls, COSID eventId, COSListener* listener, int priority) {
  assert(cls && listener && "addFirstInstanceListener needs a class and a listener");
  auto& lists = cls->tables().classListeners;
  auto it = std::find_if(lists.begin(), lists.end(), [&](auto& e) { return e.first == eventId; });
  if (it == lists.end()) it = lists.insert(lists.end(), {eventId, {}});
  it->second.push_back({COSInterfacePtr(listener), priority, 0, /*firstOfInstance=*/true});
  ++cls->tables().classListenerCount;
  ++vcos::internal::classListenerEpoch;
}

void COSClass::removeClassListener(COSID eventId, const COSListener* listener) {
  auto& lists = tables_->classListeners;
  for (auto& [id, list] : lists) {
    if (id != eventId) continue;
    for (auto it = list.begin(); it != list.end(); ++it) {
      if (it->listener.get() != listener) continue;
      static_cast<COSListener*>(it->listener.get())->markRemoved();
      list.erase(it);
      --tables_->classListenerCount;
      ++vcos::internal::classListenerEpoch;
      return;
    }
  }
}
