// The process-wide runtime answers of GraphicsState.
#include "foundation/graphicsstate/GraphicsState.h"

#include <atomic>

namespace GraphicsState {

namespace {
std::atomic<bool> javaUsed{false};
std::atomic<bool> javaLocked{false};
std::atomic<bool> production{false};
std::atomic<bool> decaf{false};
std::atomic<bool> sealClasses{true};
}  // namespace

OpenGLState& OpenGLState::instance() noexcept {
  static OpenGLState state;
  return state;
}

FigureState& FigureState::instance() noexcept {
  static FigureState state;
  return state;
}

bool usesJava() noexcept { return javaUsed.load(std::memory_order_relaxed); }

void setUsesJava(bool value, bool ifUnlocked) noexcept {
  if (ifUnlocked && javaLocked.load(std::memory_order_relaxed)) return;
  javaUsed.store(value, std::memory_order_relaxed);
}

void lockUsesJava(bool locked) noexcept { javaLocked.store(locked, std::memory_order_relaxed); }

bool sgIsProduction() noexcept { return production.load(std::memory_order_relaxed); }
void setSgIsProduction(bool value) noexcept { production.store(value, std::memory_order_relaxed); }

bool isDecaf() noexcept { return decaf.load(std::memory_order_relaxed); }
void setIsDecaf(bool value) noexcept { decaf.store(value, std::memory_order_relaxed); }

bool sgSealGraphicsClasses() noexcept { return sealClasses.load(std::memory_order_relaxed); }
void setSgSealGraphicsClasses(bool value) noexcept { sealClasses.store(value, std::memory_order_relaxed); }

}  // namespace GraphicsState
