// The callbacks of graphics objects that are running now, innermost last:
// what gcbo answers, and where a callback that arrives while another runs
// learns whether it may run. A callback that honours interruption runs at
// once when no callback runs or the innermost one's object is interruptible;
// otherwise its own object's BusyAction decides: "queue" keeps it until the
// blocking callbacks have ended, "cancel" drops it. All on the interpreter's
// thread.
#pragma once

#include <cstddef>

#include "sgdatatypes/DatatypesExport.h"
#include "sgdatatypes/VCallback.h"
#include "vcos/COSInterfacePtr.h"

namespace graphics::datatype {

class SGDATATYPES_API CallbackContext {
 public:
  // Marks a callback of `source` as running for its lifetime.
  class SGDATATYPES_API Scope {
   public:
    Scope(COSInterface* source, bool interruptible);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
  };

  // The source of the innermost running callback, or null.
  static COSInterfacePtr currentObject();
  // The number of callbacks running now.
  static std::size_t depth() noexcept;
  // Whether the innermost running callback's object refuses interruption.
  static bool isBlocked() noexcept;

  // Keeps a callback to run once nothing blocks; `data` may be null.
  static void enqueue(COSInterface* source, COSInterface* data, VCallback callback);
  static std::size_t queuedCount() noexcept;
  // Runs the queued callbacks, in order of arrival, when nothing blocks.
  // A failing callback stops the run; the later ones stay queued.
  static void runQueued();
  // Drops every queued callback (for a fresh session and for tests).
  static void clearQueue() noexcept;

  // Whether `source` is interruptible ("Interruptible", on when the object
  // lacks the property) and whether its BusyAction is "cancel".
  static bool isInterruptible(COSInterface* source);
  static bool cancelsWhenBusy(COSInterface* source);
};

}  // namespace graphics::datatype
