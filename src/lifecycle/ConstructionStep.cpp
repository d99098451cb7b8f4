// The pending construction step of the thread (ConstructionStep.h).
#include "sgutils/lifecycle/ConstructionStep.h"

#include <atomic>

namespace sgutils {

namespace {
thread_local ScopedConstructionStep* pending = nullptr;
// The scopes alive on all threads: while there are none, take answers
// without reaching for the thread's slot (every construction asks).
std::atomic<int> liveScopes{0};
}  // namespace

ScopedConstructionStep::ScopedConstructionStep(const COSClass* cls, Step step, void* context) noexcept
    : cls_(cls), step_(step), context_(context), previous_(pending) {
  pending = this;
  liveScopes.fetch_add(1, std::memory_order_relaxed);
}

ScopedConstructionStep::~ScopedConstructionStep() {
  if (pending == this) pending = previous_;
  liveScopes.fetch_sub(1, std::memory_order_relaxed);
}

ScopedConstructionStep::Taken ScopedConstructionStep::take(const COSClass* cls) noexcept {
  // A scope of this thread counts itself before it can be pending here.
  if (liveScopes.load(std::memory_order_relaxed) == 0) return {};
  ScopedConstructionStep* scope = pending;
  if (!scope || scope->cls_ != cls) return {};
  pending = scope->previous_;
  scope->taken_ = true;
  return {scope->step_, scope->context_};
}

}  // namespace sgutils
