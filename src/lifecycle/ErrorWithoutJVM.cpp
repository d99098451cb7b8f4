// The Java-layer check of graphics construction. This runtime has no Java
// virtual machine; its "real" test asks whether the runtime uses Java.
#include "sgutils/lifecycle/ErrorWithoutJVM.h"

#include "foundation/core/except/Error.h"
#include "foundation/graphicsstate/GraphicsState.h"

namespace sgutils {

std::function<bool()>& ErrorWithoutJVM::fcnIsJVMAvailable() {
  static std::function<bool()> test;
  return test;
}

bool ErrorWithoutJVM::isJVMAvailable() noexcept { return true; }
bool ErrorWithoutJVM::isJVMReallyAvailable() noexcept { return GraphicsState::usesJava(); }

void ErrorWithoutJVM::setNeverCheckJVM() { fcnIsJVMAvailable() = &isJVMAvailable; }
void ErrorWithoutJVM::setCheckJVMProduction() { fcnIsJVMAvailable() = &isJVMReallyAvailable; }

void ErrorWithoutJVM::throwErrorWithoutJVM() {
  if (GraphicsState::isDecaf()) return;
  if (fcnIsJVMAvailable()()) return;
  throw foundation::core::except::Error("VANTEL:SGGraphics:noJVM");
}

}  // namespace sgutils
