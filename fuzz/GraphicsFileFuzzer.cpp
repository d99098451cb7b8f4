// Fuzz target for the graphics-file loader: each input is the MessagePack
// body of a saved file, framed with a correct checksum so that the loader's
// own checks are what is tried. A load must build its objects or refuse the
// file with an identifier of the reader or the loader, leaving no object
// behind; anything else aborts with its description.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

#include <foundation/core/except/WarningChannel.h>

#include "GraphicsFileLoad.h"

namespace {
constexpr std::size_t kMaxInput = 65536;
}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  setenv("SG_SETTINGS_DIR", "fuzz-settings", 0);
  foundation::core::except::WarningChannel::instance().setSink([](std::string_view) {});
  sgfuzz::startGraphicsFileLoad();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > kMaxInput) return -1;
  const std::string broke = sgfuzz::loadGraphicsBody(std::span(data, size));
  if (!broke.empty()) {
    std::fprintf(stderr, "graphics file: %s\n", broke.c_str());
    std::abort();
  }
  return 0;
}
