// The pending construction step of the thread (ConstructionStep.h).
#include "sgutils/lifecycle/ConstructionStep.h"

namespace sgutils {

namespace {
thread_local ScopedConstructionStep* pending = nullptr;
}  // namespace

ScopedConstructionStep::ScopedConstructionStep(const COSClass* cls, Step step, void* context) noexcept
    : cls_(cls), step_(step), context_(context), previous_(pending) {
  pending = this;
}

ScopedConstructionStep::~ScopedConstructionStep() {
  if (pending == this) pending = previous_;
}

ScopedConstructionStep::Taken ScopedConstructionStep::take(const COSClass* cls) noexcept {
  ScopedConstructionStep* scope = pending;
  if (!scope || scope->cls_ != cls) return {};
  pending = scope->previous_;
  scope->taken_ = true;
  return {scope->step_, scope->context_};
}

}  // namespace sgutils
