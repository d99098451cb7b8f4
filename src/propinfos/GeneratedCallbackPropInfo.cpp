// The property descriptor of generated callback properties.
#include "sgutils/propinfos/GeneratedCallbackPropInfo.h"

#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "sgutils/lifecycle/SGReference.h"
#include "sgutils/metadata/SGCustomMetaEvent.h"
#include "sgutils/objects/GeneratedCallbackInterface.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventInfo.h"
#include "vx/vxCreate.h"

namespace sgutils {

using graphics::datatype::VCallback;

namespace detail {
GeneratedCallbackNames::GeneratedCallbackNames(std::string event)
    : eventName(std::move(event)),
      propertyName(eventName + "Fcn"),
      description(propertyName + " is a generated callback property for the event: " + eventName) {}
}  // namespace detail

GeneratedCallbackPropInfo::GeneratedCallbackPropInfo(COSID classId, const std::string& event)
    : detail::GeneratedCallbackNames(event),
      PropInfoBase(classId, propertyName.c_str(), COSDataTypePtr(graphics::datatype::kCallbackType), PublicAccess,
                   PublicAccess, kPropDefaultAllowed | kPropCopyAllowed | kPropInspectAllowed | kPropVisible,
                   description.c_str()) {}

void GeneratedCallbackPropInfo::addIfRequested(COSClass* cls, COSEventInfo* event) {
  const SGCustomMetaEvent* meta = SGCustomMetaEvent::of(event);
  if (!cls || !meta || !meta->getHasCallbackProperty()) return;
  cls->addProperty(new GeneratedCallbackPropInfo(cls->getID(), event->getName()));
}

GeneratedCallbackInterface* GeneratedCallbackPropInfo::interfaceOf(COSInterface* object, COSID classId) noexcept {
  if (!object) return nullptr;
  auto* block = static_cast<SGReference*>(object->getInstanceData(classId));
  return dynamic_cast<GeneratedCallbackInterface*>(block);
}

COSValue GeneratedCallbackPropInfo::getValue(COSInterface* object) const {
  GeneratedCallbackInterface* holder = interfaceOf(object, getClassID());
  VCallback* callback = holder ? holder->getCallbackFcn(propertyName) : nullptr;
  return callback ? COSValue(callback) : COSValue();
}

void GeneratedCallbackPropInfo::setValue(COSInterface* object, COSValue value) {
  GeneratedCallbackInterface* holder = interfaceOf(object, getClassID());
  COSDataTypePtr type = getDataType();
  if (!holder || !type) return;
  VCallback* old = holder->getCallbackFcn(propertyName);
  if (old && old == value.asPointer<VCallback>()) return;
  // The caller keeps its value, as with every property: the holder gets a copy.
  auto* copy = type->copy(value).asPointer<VCallback>();
  if (old) type->destroy(COSValue(old));
  holder->setCallbackFcn(propertyName, copy);
}

COSValue GeneratedCallbackPropInfo::getFactoryDefault() const {
  // Borrowed, as every class default is: callers neither own nor free it.
  static const VCallback empty;
  return COSValue(&empty);
}

void GeneratedCallbackPropInfo::getVLArrays(const COSClient*, COSInterface* instance,
                                            std::vector<vxArray*>& out) const {
  GeneratedCallbackInterface* holder = interfaceOf(instance, getClassID());
  VCallback* callback = holder ? holder->getCallbackFcn(propertyName) : nullptr;
  if (callback && callback->value()) out.push_back(vxCreateSharedCopyNotOnArrayList(callback->value()));
}

}  // namespace sgutils
