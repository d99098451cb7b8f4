// The object tree: hooking a child as the newest of its owner's chain, and
// taking it out again. The chain holds each child strongly; the child's link
// to its owner is weak, so an owner and its children form no cycle.
#include "vcos/src/core/Messages.h"
#include "vcos/src/core/ObjectOps.h"
#include "foundation/core/except/Error.h"

using foundation::core::except::Error;
using vcos::internal::ObjectOps;

void COSInterface::hookChild(COSInterface* child) {
  assert(child && "hookChild needs a child");
  checkValid();
  child->checkValid();
  if (isBeingDestroyed() || child->isBeingDestroyed()) raiseInvalidHandle();
  for (COSInterface* o = this; o; o = o->owner_)
    if (o == child) throw Error(vcos::msg::CircularOwnership);
  // Hooking an already hooked child moves it: that is how an order is rebuilt.
  COSInterfacePtr keep = ObjectOps::unlinkChild(child);
  child->addReference(COSStrongReference);
  addReference(COSWeakReference);
  child->owner_ = this;
  child->older_ = newestChild_;
  child->newer_ = nullptr;
  if (newestChild_)
    newestChild_->newer_ = child;
  else
    oldestChild_ = child;
  newestChild_ = child;
}

void COSInterface::unhookFromOwner() {
  checkValid();
  COSInterfacePtr ref = ObjectOps::unlinkChild(this);
  // Dropping the chain's reference may delete this object: nothing follows.
}
