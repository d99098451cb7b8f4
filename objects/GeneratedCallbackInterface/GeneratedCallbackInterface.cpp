// The per-object side of generated callback properties: one listener per
// flagged event, and the callbacks the properties hold.
#include "sgutils/objects/GeneratedCallbackInterface.h"

#include "foundation/log/LogRecord.h"
#include "foundation/log/Logger.h"
#include "sgdatatypes/CallbackListeners.h"
#include "sgdatatypes/Registration.h"
#include "sgdatatypes/VCallback.h"
#include "sgutils/metadata/SGCustomMetaEvent.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSIterator.h"
#include "vcos/COSListener.h"

namespace sgutils {

namespace {

using foundation::log::kDebug;

foundation::log::Logger& setgetLog() {
  static foundation::log::Logger& lg = foundation::log::channel("gencallback::setget");
  return lg;
}

void freeCallback(graphics::datatype::VCallback* callback) {
  if (!callback) return;
  static const COSDataTypePtr type(graphics::datatype::kCallbackType);
  if (type)
    type->destroy(COSValue(callback));
  else
    delete callback;
}

}  // namespace

GeneratedCallbackInterface::GeneratedCallbackInterface() = default;

GeneratedCallbackInterface::~GeneratedCallbackInterface() { detachGeneratedCallbacks(static_cast<COSInterface*>(nullptr)); }

void GeneratedCallbackInterface::attachGeneratedCallbacks(COSInterfacePtr object) {
  if (!object || !listeners_.empty()) return;
  COSClass* cls = object->getClass();
  if (!cls) return;
  COSIterator events;
  cls->getEvents(events);
  while (events.hasMoreElements()) {
    COSInterfacePtr element = events.nextElement();
    auto* event = static_cast<COSEventInfo*>(element.get());
    const SGCustomMetaEvent* meta = SGCustomMetaEvent::of(element.get());
    const bool isCallback = meta && meta->getHasCallbackProperty();
    FOUNDATION_LOG(setgetLog(), kDebug) << "Looping over cls: " << cls->getName() << " event: " << event->getName()
                                        << " IsCallback: " << (isCallback ? "true" : "false");
    if (!isCallback) continue;
    const std::string propertyName = std::string(event->getName()) + "Fcn";
    COSInterfacePtr listener = graphics::datatype::createListener(propertyName.c_str(), /*passEventData=*/true,
                                                                  /*allowRecursion=*/true,
                                                                  graphics::datatype::Interruption::Honour);
    object->addListener(event->getID(), COSListener::toListener(listener));
    FOUNDATION_LOG(setgetLog(), kDebug) << "Add " << event->getName() << " listener for: " << propertyName
                                        << " on class: " << cls->getName();
    listeners_[event->getName()] = Attached{event->getID(), std::move(listener)};
  }
}

void GeneratedCallbackInterface::detachGeneratedCallbacks(COSInterfacePtr object) {
  detachGeneratedCallbacks(object.get());
}

void GeneratedCallbackInterface::detachGeneratedCallbacks(COSInterface* object) noexcept {
  for (auto& [name, attached] : listeners_)
    if (object && !object->isDestroyed()) object->removeListener(attached.event, COSListener::toListener(attached.listener));
  listeners_.clear();
  // Taken out first: freeing a callback may run code that reads the map.
  std::map<std::string, graphics::datatype::VCallback*> callbacks;
  callbacks.swap(callbacks_);
  for (auto& [name, callback] : callbacks) freeCallback(callback);
}

graphics::datatype::VCallback* GeneratedCallbackInterface::getCallbackFcn(const std::string& propertyName) const {
  auto it = callbacks_.find(propertyName);
  if (it == callbacks_.end()) return nullptr;
  FOUNDATION_LOG(setgetLog(), kDebug) << "getCallbackFcn for propName: " << propertyName;
  return it->second;
}

void GeneratedCallbackInterface::setCallbackFcn(const std::string& propertyName,
                                                graphics::datatype::VCallback* callback) {
  FOUNDATION_LOG(setgetLog(), kDebug) << "setCallbackFcn for propName: " << propertyName;
  callbacks_[propertyName] = callback;
}

}  // namespace sgutils
