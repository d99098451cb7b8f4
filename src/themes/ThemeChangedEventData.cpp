#include "sgutils/themes/ThemeChangedEventData.h"

#include <utility>

#include "sgutils/objects/ThemeChangedData.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSClient.h"

namespace graphics::eventdata {

namespace {
const COSID& themeChangedId() {
  static const COSID id("ThemeChanged");
  return id;
}
}  // namespace

ThemeChangedEventData::ThemeChangedEventData(COSInterface* source, ThemeChangedDataImpl change)
    : COSEventData(source, themeChangedId()), change_(std::move(change)) {}

ThemeChangedEventData::~ThemeChangedEventData() = default;

void fireThemeChangedEvent(const COSInterfacePtr& object, const ThemeChangedDataImpl& change) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return;
  // Event data is counted like any object; the reference frees it.
  COSInterfacePtr data(new ThemeChangedEventData(object.get(), change));
  auto* eventData = static_cast<ThemeChangedEventData*>(data.get());
  vcos::bindEventData(eventData, ThemeChangedData::getClassInstance());
  if (ThemeChangedData* block = sgutils::blockOf<ThemeChangedData>(eventData, ThemeChangedData::classID()))
    block->assign(change);
  object->notifyEvent(COSGetPublicClient(), themeChangedId(), eventData);
}

}  // namespace graphics::eventdata
