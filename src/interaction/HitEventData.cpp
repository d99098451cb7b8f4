#include "sgutils/interaction/HitEventData.h"

#include <utility>

#include "vcos/COSClient.h"

namespace graphics::eventdata {

namespace {
const COSID& hitEventId() {
  static const COSID id("Hit");
  return id;
}
}  // namespace

HitEventData::HitEventData(COSInterface* source, HitImpl hit) : COSEventData(source, hitEventId()), hit_(std::move(hit)) {}

HitEventData::~HitEventData() = default;

void fireHitEvent(const COSInterfacePtr& object, const HitImpl& hit) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return;
  // Event data is counted like any object; the reference frees it.
  COSInterfacePtr data(new HitEventData(object.get(), hit));
  object->notifyEvent(COSGetPublicClient(), hitEventId(), static_cast<COSEventData*>(data.get()));
}

}  // namespace graphics::eventdata
