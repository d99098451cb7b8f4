// A step that the maker of one new object runs inside the object's
// constructor stages, after Setup and before the name-value input, as a pair
// given first would run: sgclasses::create hooks the new object under its
// parent there directly, without a "Parent" pair set by name. A step that
// fails fails the construction like a bad pair (SetupFailed, the object
// leaves the tree and goes).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

class COSClass;

namespace sgutils {

// Holds the step for the next object of `cls` whose stages start on this
// thread; the stages take it, so objects that Setup makes in turn do not see
// it. A step not taken by the end of the scope is dropped.
class SGUTILS_API ScopedConstructionStep {
 public:
  using Step = void (*)(void* context, const COSInterfacePtr& object);
  ScopedConstructionStep(const COSClass* cls, Step step, void* context) noexcept;
  ~ScopedConstructionStep();
  ScopedConstructionStep(const ScopedConstructionStep&) = delete;
  ScopedConstructionStep& operator=(const ScopedConstructionStep&) = delete;

  // Whether the stages of an object took the step (a class whose
  // constructor runs no stages never does).
  bool taken() const noexcept { return taken_; }

  // The step pending for a new object of `cls` (an empty one otherwise),
  // taken away from the thread before Setup, so that objects Setup makes do
  // not take it.
  struct Taken {
    Step step = nullptr;
    void* context = nullptr;
    void run(const COSInterfacePtr& object) const {
      if (step) step(context, object);
    }
  };
  static Taken take(const COSClass* cls) noexcept;

 private:
  const COSClass* cls_;
  Step step_;
  void* context_;
  ScopedConstructionStep* previous_;
  bool taken_ = false;
};

}  // namespace sgutils
