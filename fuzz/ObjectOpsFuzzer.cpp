// Fuzz target for operations on graphics objects: each input is a sequence
// of operations (see ObjectOps.cpp) run on a fresh tree. A violation of the
// tree's promises aborts with its description; a crash or a sanitizer
// report is a finding of its own.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include <foundation/core/except/WarningChannel.h>

#include "ObjectOps.h"

namespace {
constexpr std::size_t kMaxInput = 1024;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("SG_SETTINGS_DIR", "fuzz-settings", 0);
  foundation::core::except::WarningChannel::instance().setSink([](std::string_view) {});
  sgfuzz::startObjectOps();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMaxInput) return -1;
  const std::string violation = sgfuzz::runObjectOps(std::span(data, size));
  if (!violation.empty()) {
    std::fprintf(stderr, "object operations: %s\n", violation.c_str());
    std::abort();
  }
  return 0;
}
