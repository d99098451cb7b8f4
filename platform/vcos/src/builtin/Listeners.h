// Not installed; internal to the built-in classes of the class-object system.
//
// Members of the listener and event data classes, and the one way to make a
// listener object and attach it to its sources.
#pragma once

#include <vector>

#include "vcos/src/builtin/ListenerBlock.h"

class COSClass;

namespace vcos::builtin {

void addListenerMembers(COSClass* cls);
void addEventDataMembers(COSClass* cls);
void addPropertyEventMembers(COSClass* cls);

struct AttachRequest {
  bool propertyListener = false;
  COSID eventName;                                      // event listeners
  COSPropertyEvent propertyEvent = COSPropertyEvent::PostSet;  // property listeners
  std::vector<ListenerBlock::Attachment> attachments;  // checked: live sources, found properties
  const vxArray* callback = nullptr;                   // checked with isCallback
};

// A new listener object ("event.listener" or "event.proplistener") attached
// to every source of the request; it runs its callback with the source and
// an event data object.
COSInterfacePtr attachListenerObject(const AttachRequest& request);

}  // namespace vcos::builtin
