// Not installed; internal to the class-object system.
//
// Pieces of the client get path (PropertyPath.cpp) for readers that found
// the property's slot themselves (SlotReader).
#pragma once

#include "vcos/src/class/ClassTables.h"
#include "vcos/src/core/InstanceExtras.h"
#include "vcos/src/core/ObjectOps.h"

namespace vcos::internal {

// Whether the object has property listeners of its own.
inline bool hasPropertyListeners(const COSInterface* o) noexcept {
  const InstanceExtras* x = ObjectOps::extrasIfAny(o);
  return x && x->propertyListenerCount > 0;
}

// The get past the access check when the slot routes it off the plain course
// or the object has property listeners: PreGet listeners, the custom get of
// `slot.customGet` or the property's getValue, PostGet listeners. `slot` is a
// copy: a listener may move the class's table or turn a path on, and the
// release of the value must go where its get came from (`slot.customGet`).
COSValue getObserved(COSInterface* o, PropSlot slot, const COSPropInfo* property);

}  // namespace vcos::internal
