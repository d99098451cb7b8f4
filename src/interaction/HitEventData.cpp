#include "sgutils/interaction/HitEventData.h"

#include <utility>

#include "sgutils/objects/Hit.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/BuiltinClasses.h"
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
  // As an object of the Hit class, a language callback reads the hit's values.
  auto* eventData = static_cast<HitEventData*>(data.get());
  vcos::bindEventData(eventData, Hit::getClassInstance());
  if (Hit* block = sgutils::blockOf<Hit>(eventData, Hit::classID())) block->assign(hit);
  object->notifyEvent(COSGetPublicClient(), hitEventId(), eventData);
}

}  // namespace graphics::eventdata
