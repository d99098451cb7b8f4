// The corrupt-file sweeps of the file tests: every damaged copy of a saved
// file, and the identifiers a load may refuse one with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace sgtest {

// True for an identifier of the file reader or of the graphics loader.
inline bool isLoaderRefusal(std::string_view id) {
  return id.starts_with("VANTEL:vx:serialize:") || id.starts_with("VANTEL:sg:load:");
}

// Hands `attempt` every truncation of `bytes` (shortest first), then every
// copy with one byte changed; 2 * bytes.size() calls in all.
template <class Attempt>
void forEachDamagedCopy(std::span<const std::uint8_t> bytes, Attempt&& attempt) {
  for (std::size_t n = 0; n < bytes.size(); ++n) attempt(bytes.first(n));
  std::vector<std::uint8_t> damaged(bytes.begin(), bytes.end());
  for (std::size_t i = 0; i < damaged.size(); ++i) {
    damaged[i] ^= 0x5a;
    attempt(std::span<const std::uint8_t>(damaged));
    damaged[i] ^= 0x5a;
  }
}

}  // namespace sgtest
