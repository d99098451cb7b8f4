// A listener attached to an event of one object, owned by the one who
// attached it: resetting the guard, or its end, takes the listener off the
// source again (unless the source was deleted, which took its listeners
// along). The source is held weakly, so the guard never keeps it alive.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"

class COSListenerOp;

namespace sgutils {

class SGUTILS_API AttachedListener {
 public:
  AttachedListener() = default;
  AttachedListener(const AttachedListener&) = delete;
  AttachedListener& operator=(const AttachedListener&) = delete;
  ~AttachedListener() { reset(); }

  // Takes the op, makes the listener and attaches it to `event` of
  // `source`, after taking off the one held before.
  void attach(COSInterface* source, COSID event, COSListenerOp* op);
  void reset() noexcept;
  bool isAttached() const noexcept { return static_cast<bool>(listener_); }

 private:
  COSInterfacePtr source_;    // weak
  COSInterfacePtr listener_;  // strong
  COSID event_;
};

}  // namespace sgutils
