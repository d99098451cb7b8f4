// Listeners owned by the one who attached them (AttachedListener.h).
#include "sgutils/objects/AttachedListener.h"

#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"

namespace sgutils {

void AttachedListener::attach(COSInterface* source, COSID event, COSListenerOp* op) {
  reset();
  COSInterfacePtr listener = COSListener::createListener(op);
  source->addListener(event, COSListener::toListener(listener));
  source_ = COSInterfacePtr(source, COSWeakReference);
  listener_ = std::move(listener);
  event_ = event;
}

void AttachedListener::reset() noexcept {
  if (!listener_) return;
  COSListener* listener = COSListener::toListener(listener_);
  // A deleted source has let go of its listeners already.
  if (source_ && !source_->isDestroyed()) source_->removeListener(event_, listener);
  // Skipped from here on, even by a notification that is running.
  if (listener) listener->markRemoved();
  source_.reset();
  listener_.reset();
}

}  // namespace sgutils
