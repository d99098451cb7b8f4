// The check that a graphics object may be made in this process: some
// runtimes need the Java layer for graphics. Start-up picks the test in force
// (never check, or the real check in a production build); the constructor
// method asks it before anything is set up.
#pragma once

#include <functional>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API ErrorWithoutJVM {
 public:
  // Puts the test that always passes in force.
  static void setNeverCheckJVM();
  // Puts the real test in force: whether the runtime uses Java.
  static void setCheckJVMProduction();
  // Returns in a reduced runtime, or when the test passes; otherwise raises
  // "VANTEL:SGGraphics:noJVM". With no test set: std::bad_function_call.
  static void throwErrorWithoutJVM();

  static bool isJVMAvailable() noexcept;
  static bool isJVMReallyAvailable() noexcept;

  // The test in force (exposed for tests that install their own).
  static std::function<bool()>& fcnIsJVMAvailable();
};

}  // namespace sgutils
