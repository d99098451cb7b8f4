// The callback that a listener runs. fromFunction wraps a callable.
#pragma once

#include <functional>
#include <memory>

#include "foundation/PlatformExport.h"

class COSEventData;
class COSInterface;

class VCOS_API COSListenerOp {
 public:
  virtual ~COSListenerOp();
  virtual void callback(COSInterface* source, COSEventData* data) = 0;

  static COSListenerOp* fromFunction(std::function<void(COSInterface*, COSEventData*)> fn);
};
