// The run-time face of everything in the class-object system: instances,
// classes, properties, methods and events.
//
// Lifetime: two intrusive counts, like a shared/weak pair. A reference of type
// 0 (strong) keeps the object alive; a reference of type 2 (weak) keeps only
// its memory, so isDestroyed() can always be asked through it. When the last
// strong reference goes, lastStrongReferenceReleased() runs (a handle object
// deletes itself there); the memory goes with the last reference of any type.
// Counts are plain integers: class-system work runs on the interpreter thread.
#pragma once

#include <cassert>
#include <cstdint>

#include "foundation/PlatformExport.h"

class VCOS_API COSInterface {
 public:
  COSInterface() = default;
  COSInterface(const COSInterface&) = delete;
  COSInterface& operator=(const COSInterface&) = delete;

  void addReference(int referenceType) noexcept {
    if (referenceType == 0) ++strong_;
    ++total_;
  }

  void releaseReference(int referenceType) {
    assert(total_ > 0 && "reference released twice");
    if (referenceType == 0) {
      assert(strong_ > 0 && "strong reference released twice");
      if (--strong_ == 0) {
        // Hold the memory while the object tears itself down; the teardown
        // may take and drop references of its own.
        ++total_;
        lastStrongReferenceReleased();
        --total_;
      }
    }
    if (--total_ == 0) delete this;
  }

  std::uint32_t strongReferenceCount() const noexcept { return strong_; }
  std::uint32_t referenceCount() const noexcept { return total_; }

 protected:
  virtual ~COSInterface();
  // Runs when the last strong reference goes. The default does nothing.
  virtual void lastStrongReferenceReleased();

 private:
  std::uint32_t strong_ = 0;
  std::uint32_t total_ = 0;
};
