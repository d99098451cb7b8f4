// The callback that a listener runs. fromFunction wraps a callable.
#pragma once

#include <functional>
#include <memory>

#include "foundation/PlatformExport.h"

class COSClass;
class COSEventData;
class COSInterface;

class VCOS_API COSListenerOp {
 public:
  virtual ~COSListenerOp();
  virtual void callback(COSInterface* source, COSEventData* data) = 0;
  // Whether callback reads its data. An op that never does is handed null
  // when the sender made none, which spares an event data object per event.
  virtual bool readsEventData() const noexcept { return true; }
  // False only when callback would certainly do nothing for this source
  // now (say, the callback property it runs is empty). A notification that
  // no listener may run for is not dispatched at all.
  virtual bool mayRunFor(COSInterface* /*source*/) const noexcept { return true; }
  // False only when callback would certainly do nothing for any instance of
  // `cls` that has no properties added at run time (say, the class has no
  // callback property of the name it runs). Asked once per class while no
  // class's properties change; a notification whose listeners all answer
  // false is not dispatched to such an instance.
  virtual bool mayRunForInstancesOf(const COSClass* /*cls*/) const noexcept { return true; }

  static COSListenerOp* fromFunction(std::function<void(COSInterface*, COSEventData*)> fn);
};
