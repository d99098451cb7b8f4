// Fuzz target for the command language: each input is lexed, parsed and run
// by a fresh interpreter. Any result or any error with an identifier is
// fine; a crash, a sanitizer report, a hang or an error that escapes as
// something else is a finding. Runs are bounded by a statement budget and an
// element cap, so the fuzzer explores behaviour rather than waiting on long
// loops or huge arrays.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include <foundation/core/except/WarningChannel.h>

#include "eval/ArrayOps.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"

namespace {

// Together they bound a run to some 10^8 element operations: a loop of
// 10,000 steps over arrays of 16,384 elements.
constexpr std::uint64_t kStepLimit = 10000;
constexpr vxSize kElementLimit = vxSize{1} << 14;
constexpr std::size_t kMaxInput = 4096;

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  // Settings that code may change (feature, warning) stay in a scratch folder.
  setenv("SG_SETTINGS_DIR", "fuzz-settings", 0);
  sgsh::ops::setElementLimit(kElementLimit);
  foundation::core::except::WarningChannel::instance().setSink([](std::string_view) {});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMaxInput) return -1;  // not added to the corpus
  const std::string_view source(reinterpret_cast<const char*>(data), size);
  sgsh::OutputCapture quiet([](std::string_view) {});
  sgsh::Interpreter interp;
  interp.setStepLimit(kStepLimit);
  try {
    interp.run(source);
  } catch (const std::exception&) {
    // Every error the language raises derives from std::exception; which
    // identifier it carries is checked by the shell's own tests.
  }
  return 0;
}
