// The listener operation behind createListener and createClassListener.
#include "sgdatatypes/CallbackListeners.h"

#include <cassert>

#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/COSDataType.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropInfo.h"

namespace graphics::datatype {
namespace {

class PropertyCallbackOp final : public COSListenerOp {
 public:
  PropertyCallbackOp(COSID property, bool passEventData, bool skipDying)
      : property_(property), passEventData_(passEventData), skipDying_(skipDying) {}

  void callback(COSInterface* source, COSEventData* data) override {
    if (!source || source->isDestroyed() || (skipDying_ && source->isBeingDestroyed())) return;
    COSPropInfo* property = source->findPropertyInfo(property_);
    if (!property) return;
    // A copy: the callback may replace or clear the property it runs from.
    const VCallback callback = read(source, property);
    callback.execute(source, passEventData_ ? data : nullptr);
  }

 private:
  static VCallback read(COSInterface* source, COSPropInfo* property) {
    static const COSID callbackType(kCallbackType);
    COSDataTypePtr type = property->getDataType();
    const BorrowedPropertyValue borrowed = BorrowedPropertyValue::readDirect(source, property);
    const COSValue value = borrowed.get();
    if (type && type->getID() == callbackType) {
      const VCallback* held = value.asPointer<const VCallback>();
      return held ? *held : VCallback();
    }
    if (type && type->isVANTELArrayType()) return VCallback::fromArray(value.asPointer<const vxArray>());
    return VCallback();
  }

  COSID property_;
  bool passEventData_;
  bool skipDying_;
};

COSInterfacePtr make(const char* propertyName, bool passEventData, bool allowRecursion, bool skipDying) {
  assert(propertyName && *propertyName && "a callback listener needs a property name");
  COSInterfacePtr listener =
      COSListener::createListener(new PropertyCallbackOp(COSID(propertyName), passEventData, skipDying));
  COSListener::toListener(listener)->setRecursive(allowRecursion);
  return listener;
}

}  // namespace

COSInterfacePtr createListener(const char* propertyName, bool passEventData, bool allowRecursion) {
  return make(propertyName, passEventData, allowRecursion, /*skipDying=*/false);
}

COSInterfacePtr createClassListener(const char* propertyName, bool passEventData, bool allowRecursion) {
  return make(propertyName, passEventData, allowRecursion, /*skipDying=*/true);
}

}  // namespace graphics::datatype
