// Not installed; internal to the built-in classes of the class-object system.
//
// The data blocks of listener objects ("event.listener",
// "event.proplistener") and of the event data objects handed to callbacks
// ("event.EventData", "event.PropertyEvent").
//
// Ownership: each source holds the registered COSListener strongly; the
// listener's op holds the listener object, strongly for addlistener's
// listeners and weakly for those made by a constructor; the listener object
// holds its sources weakly and its COSListener not at all (a plain pointer
// that the op clears when the COSListener goes, which is the moment the last
// source lets it go). So an addlistener listener lives as long as a source
// or a variable holds it, a constructed one as long as a variable holds it,
// and no cycle forms, not even one through memory kept by a weak reference.
// Deleting the listener object detaches it from every source that is still
// alive.
#pragma once

#include <vector>

#include "vcos/COSInterface.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

class COSListener;
class COSListenerOp;

namespace vcos::builtin {

struct ListenerBlock {
  struct Attachment {
    COSInterfacePtr source{nullptr, COSWeakReference};
    const COSPropInfo* property;  // null for an event listener
  };

  explicit ListenerBlock(COSInterface*) {}
  // Detaches from the sources; runs when the listener object is deleted.
  void teardown(COSInterface* self);

  bool propertyListener() const { return forProperties; }
  bool enabled() const;
  void setEnabled(bool on);
  vxArray* sourceArray() const;
  vxArray* eventNameArray() const;
  vxArray* callbackArray() const;
  void setCallback(vxArray* callback);

  COSListener* listener = nullptr;  // the registered listener while a source holds it
  COSListenerOp* op = nullptr;      // its op, cleared with `listener`
  std::vector<Attachment> attachments;
  COSID eventName;
  COSPropertyEvent propertyEvent = COSPropertyEvent::PostSet;
  bool forProperties = false;  // "event.proplistener"
  matrix::unique_vxArray callback;
};

struct EventDataBlock {
  explicit EventDataBlock(COSInterface*) {}
  void teardown(COSInterface*) {}

  vxArray* sourceArray() const;
  vxArray* eventNameArray() const;

  COSInterfacePtr source{nullptr, COSWeakReference};
  COSID eventName;
};

struct PropertyEventBlock {
  explicit PropertyEventBlock(COSInterface*) {}
  void teardown(COSInterface*) {}

  vxArray* affectedObjectArray() const;

  COSInterfacePtr affectedObject{nullptr, COSWeakReference};
};

}  // namespace vcos::builtin
