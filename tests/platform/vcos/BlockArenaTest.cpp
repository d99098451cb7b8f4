// The room for an instance's blocks: carving, what it owns, and scopes that
// nest (an object made while another's blocks are made).
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "vcos/BlockArena.h"
#include "vcos/src/core/BlockArenaScope.h"

using vcos::internal::BlockArenaScope;

TEST(BlockArena, CarvesAlignedBlocksUntilFullAndNestedScopesKeepTheirOwnRoom) {
  alignas(16) std::byte outer[96];
  alignas(16) std::byte inner[32];
  {
    BlockArenaScope scope(outer, outer + sizeof outer);
    void* a = vcos::blockarena::allocate(40);  // takes 48
    EXPECT_EQ(a, outer);
    {
      BlockArenaScope nested(inner, inner + sizeof inner);
      EXPECT_EQ(vcos::blockarena::allocate(20), inner);
      EXPECT_EQ(vcos::blockarena::allocate(20), nullptr) << "past the nested room";
      EXPECT_FALSE(vcos::blockarena::owns(a));
      EXPECT_EQ(nested.asked(), 64u);
    }
    // The outer room goes on where it stopped.
    void* b = vcos::blockarena::allocate(48);
    EXPECT_EQ(b, outer + 48);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(b) % 16, 0u);
    EXPECT_EQ(vcos::blockarena::allocate(1), nullptr);
    EXPECT_EQ(scope.asked(), 112u) << "what was asked counts also what did not fit";
    EXPECT_TRUE(vcos::blockarena::owns(outer + 95));
    EXPECT_FALSE(vcos::blockarena::owns(outer + 96));
    EXPECT_FALSE(vcos::blockarena::owns(inner));
  }
  // No scope: nothing is carved and nothing owned.
  EXPECT_EQ(vcos::blockarena::allocate(16), nullptr);
  EXPECT_FALSE(vcos::blockarena::owns(outer));
}
