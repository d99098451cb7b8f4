// The listener operation behind createListener and createClassListener.
#include "sgdatatypes/CallbackListeners.h"

#include <cassert>

#include "sgdatatypes/CallbackContext.h"
#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropInfo.h"
#include "vcos/DynamicProperties.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vx/vxQuery.h"

namespace graphics::datatype {
namespace {

// The class's property of one name, remembered for the last class asked
// while no property slot of any class has changed (the property route
// epoch): the listeners that hear every creation and deletion meet one class
// after another of the same kind.
class ClassPropertyMemo {
 public:
  COSPropInfo* find(const COSClass* cls, COSID name) const noexcept {
    const std::uint64_t epoch = vcos::propertyRouteEpoch();
    if (cls != class_ || epoch != epoch_) {
      property_ = cls->findPropertyExact(name);
      class_ = cls;
      epoch_ = epoch;
    }
    return property_;
  }

 private:
  mutable const COSClass* class_ = nullptr;
  mutable std::uint64_t epoch_ = 0;
  mutable COSPropInfo* property_ = nullptr;
};

// The callback property by its own name: the class's, else one added to the
// object at run time. No prefix match: a listener for one callback never
// runs a property of a longer name, and a class without the property (most
// of those that hear a creation) answers without a look-up.
[[gnu::noinline]] COSPropInfo* dynamicCallbackProperty(COSInterface* source, COSID name) {
  COSInterfacePtr found;
  source->findDynamicProperty(found, name);
  return static_cast<COSPropInfo*>(found.get());
}

inline COSPropInfo* callbackProperty(COSInterface* source, COSID name, const ClassPropertyMemo& memo) {
  if (const COSClass* cls = source->getClass())
    if (COSPropInfo* p = memo.find(cls, name)) return p;
  return vcos::hasDynamicProperties(source) ? dynamicCallbackProperty(source, name) : nullptr;
}

class PropertyCallbackOp final : public COSListenerOp {
 public:
  PropertyCallbackOp(COSID property, bool passEventData, bool skipDying, Interruption interruption)
      : property_(property), passEventData_(passEventData), skipDying_(skipDying), interruption_(interruption) {}

  void callback(COSInterface* source, COSEventData* data) override {
    if (!source || source->isDestroyed() || (skipDying_ && source->isBeingDestroyed())) return;
    COSPropInfo* property = callbackProperty(source, property_, memo_);
    if (!property) return;
    // A copy: the callback may replace or clear the property it runs from.
    VCallback callback = read(source, property);
    if (callback.isEmpty()) return;
    COSEventData* passed = passEventData_ ? data : nullptr;
    if (interruption_ == Interruption::Honour && CallbackContext::isBlocked()) {
      if (!CallbackContext::cancelsWhenBusy(source)) CallbackContext::enqueue(source, passed, std::move(callback));
      return;
    }
    {
      CallbackContext::Scope running(source, CallbackContext::isInterruptible(source));
      callback.execute(source, passed);
    }
    // What waited for this callback runs now that it has ended.
    if (CallbackContext::queuedCount() != 0) CallbackContext::runQueued();
  }

  bool readsEventData() const noexcept override { return passEventData_; }

  // Nothing runs for a source whose callback property is missing or empty,
  // which is the case of nearly every new object and its CreateFcn. Read
  // in place, without the copy that callback takes.
  // An instance without properties added at run time has only its class's.
  bool mayRunForInstancesOf(const COSClass* cls) const noexcept override {
    return !cls || memo_.find(cls, property_) != nullptr;
  }

  bool mayRunFor(COSInterface* source) const noexcept override {
    if (!source || source->isDestroyed() || (skipDying_ && source->isBeingDestroyed())) return false;
    try {
      COSPropInfo* property = callbackProperty(source, property_, memo_);
      if (!property) return false;
      return visitHeld(
          source, property, [](const VCallback* held) { return held && !held->isEmpty(); },
          [](const vxArray* array) { return array && !vxIsEmpty(array); }, false);
    } catch (...) {
      return true;  // let callback meet the failure as it always has
    }
  }

 private:
  // Reads the callback property in place and hands what it holds to the
  // visitor of its form: a callback value, or an array (the older form);
  // `none` for a property of another type.
  template <class R, class OnCallback, class OnArray>
  static R visitHeld(COSInterface* source, COSPropInfo* property, OnCallback onCallback, OnArray onArray, R none) {
    static const COSID callbackType(kCallbackType);
    COSDataTypePtr type = property->getDataType();
    const BorrowedPropertyValue borrowed = BorrowedPropertyValue::readDirect(source, property);
    const COSValue value = borrowed.get();
    if (type && type->getID() == callbackType) return onCallback(value.asPointer<const VCallback>());
    if (type && type->isVANTELArrayType()) return onArray(value.asPointer<const vxArray>());
    return none;
  }

  static VCallback read(COSInterface* source, COSPropInfo* property) {
    return visitHeld(
        source, property, [](const VCallback* held) { return held ? *held : VCallback(); },
        [](const vxArray* array) { return VCallback::fromArray(array); }, VCallback());
  }

  COSID property_;
  ClassPropertyMemo memo_;
  bool passEventData_;
  bool skipDying_;
  Interruption interruption_;
};

COSInterfacePtr make(COSID propertyName, bool passEventData, bool allowRecursion, bool skipDying,
                     Interruption interruption) {
  assert(propertyName && "a callback listener needs a property name");
  COSInterfacePtr listener = COSListener::createListener(
      new PropertyCallbackOp(propertyName, passEventData, skipDying, interruption));
  COSListener::toListener(listener)->setRecursive(allowRecursion);
  return listener;
}

}  // namespace

COSInterfacePtr createListener(const char* propertyName, bool passEventData, bool allowRecursion,
                               Interruption interruption) {
  assert(propertyName && *propertyName && "a callback listener needs a property name");
  return make(COSID(propertyName), passEventData, allowRecursion, /*skipDying=*/false, interruption);
}

COSInterfacePtr createListener(COSID propertyName, bool passEventData, bool allowRecursion, Interruption interruption) {
  return make(propertyName, passEventData, allowRecursion, /*skipDying=*/false, interruption);
}

std::unique_ptr<COSListenerOp> createCallbackOp(COSID propertyName, bool passEventData, Interruption interruption) {
  assert(propertyName && "a callback listener needs a property name");
  return std::make_unique<PropertyCallbackOp>(propertyName, passEventData, /*skipDying=*/false, interruption);
}

COSInterfacePtr createClassListener(const char* propertyName, bool passEventData, bool allowRecursion,
                                    Interruption interruption) {
  assert(propertyName && *propertyName && "a callback listener needs a property name");
  return make(COSID(propertyName), passEventData, allowRecursion, /*skipDying=*/true, interruption);
}

}  // namespace graphics::datatype
