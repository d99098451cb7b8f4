// The corrupt-file sweeps of the file tests: every damaged copy of a saved
// file, and the identifiers a load may refuse one with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/core/except/IMsgIDException.h"

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

// How the copies of a sweep ended: loaded (and checked by the caller) or
// refused with an identifier.
struct SweepResult {
  int loadedSame = 0;
  int refused = 0;
};

// Tries one copy: `loadAndCheck(copy)` loads it, checks what came back and
// deletes it, or throws. A refusal must carry an identifier of the reader or
// the loader, and either way the live object count must be `live` after.
template <class LoadAndCheck, class LiveCount>
void tryDamagedCopy(std::span<const std::uint8_t> copy, std::size_t live, LiveCount&& liveCount,
                    LoadAndCheck&& loadAndCheck, SweepResult& result) {
  try {
    loadAndCheck(copy);
    ++result.loadedSame;
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_TRUE(isLoaderRefusal(e.identifier())) << e.identifier();
    ++result.refused;
  }
  EXPECT_EQ(liveCount(), live) << "after " << copy.size() << " bytes, loaded " << result.loadedSame;
}

// tryDamagedCopy for every damaged copy of `bytes`.
template <class LoadAndCheck, class LiveCount>
SweepResult sweepDamagedCopies(std::span<const std::uint8_t> bytes, std::size_t live, LiveCount&& liveCount,
                               LoadAndCheck&& loadAndCheck) {
  SweepResult result;
  forEachDamagedCopy(bytes, [&](std::span<const std::uint8_t> copy) {
    tryDamagedCopy(copy, live, liveCount, loadAndCheck, result);
  });
  return result;
}

}  // namespace sgtest
