// One entry of a copy transaction: one source object, and its copy once it
// exists. The tasks of a transaction are kept in planning order (breadth
// first), so a parent's task always stands before its children's.
#pragma once

#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vx/matrix.h"

namespace sgutils {

class CopyContextImpl;
namespace copy {
struct ClassCopyPlan;
}

struct CopyTask {
  // 0: planned, 1: copied, 2: connected (or the root task).
  enum State : int { kPlanned = 0, kCopied = 1, kConnected = 2 };

  CopyTask* parentTask = nullptr;
  COSID className;
  // The source and its copy as 1-by-1 arrays, for a copyElement or
  // connectCopyToTree that a class overrides (and for the copy, for its
  // children's Parent and for the caller); made when first needed, since the
  // Copyable's own methods run without them.
  matrix::unique_vxArray sourceArray;
  matrix::unique_vxArray copyArray;
  // What the default copyElement allocated for this task; the copy must be
  // it. Held by a memory-only reference, so that no other object can take
  // its address while the task compares.
  COSInterfacePtr allocatedCopy{static_cast<COSInterface*>(nullptr), COSWeakReference};
  COSInterfacePtr source;
  // The copy once copyElement has run (the root task: the destination
  // parent, or null).
  COSInterfacePtr copy;
  int state = kPlanned;
  const COSInterface* identity = nullptr;
  CopyContextImpl* context = nullptr;
  // What the copy does with the source's class, found once per class.
  const copy::ClassCopyPlan* plan = nullptr;
};

}  // namespace sgutils
