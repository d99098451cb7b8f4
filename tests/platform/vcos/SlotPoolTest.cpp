// The slot pool behind instances, their side tables and the data blocks.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <set>
#include <vector>

#include "vcos/SlotPool.h"

using vcos::internal::SlotPool;

namespace {

TEST(SlotPool, SlotsAreAlignedDisjointAcrossSlabsAndReused) {
  SlotPool pool(40, 8);
  std::vector<void*> slots;
  // More than one slab's worth, each filled with its own byte.
  for (int i = 0; i < 40000; ++i) {
    void* p = pool.allocate();
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(p) % 8, 0u);
    std::memset(p, i & 0xff, 40);
    slots.push_back(p);
  }
  for (std::size_t i = 0; i < slots.size(); ++i)
    ASSERT_EQ(static_cast<unsigned char*>(slots[i])[39], i & 0xff) << "slot " << i << " was overwritten";
  EXPECT_EQ(std::set<void*>(slots.begin(), slots.end()).size(), slots.size());

  // A slot given back is handed out again before fresh memory is used. Under
  // AddressSanitizer slots are heap blocks of their own and nothing is reused.
#if !defined(__SANITIZE_ADDRESS__)
  pool.release(slots[123]);
  pool.release(slots[7]);
  EXPECT_EQ(pool.allocate(), slots[7]);
  EXPECT_EQ(pool.allocate(), slots[123]);
  // Slots made in a row are neighbours.
  void* a = pool.allocate();
  void* b = pool.allocate();
  EXPECT_EQ(static_cast<char*>(b) - static_cast<char*>(a), 40);
  for (void* p : slots) pool.release(p);
  pool.release(a);
  pool.release(b);
#else
  for (void* p : slots) pool.release(p);
#endif
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(SlotPool, EmptySlabsAreKeptWithinTheBoundAndGoBackWhenReleased) {
  SlotPool pool(48, 16, 64 * 1024);
  std::vector<void*> slots;
  for (int i = 0; i < 5000; ++i) slots.push_back(pool.allocate());  // four slabs
  ASSERT_GE(pool.slabCount(), 4u);
  const std::size_t full = pool.slabCount();
  // Every other slot back: each slab still has slots in use.
  for (std::size_t i = 0; i < slots.size(); i += 2) pool.release(slots[i]);
  EXPECT_EQ(pool.slabCount(), full);
  // The freed slots are used again before any new slab.
  for (std::size_t i = 0; i < slots.size(); i += 2) slots[i] = pool.allocate();
  EXPECT_EQ(pool.slabCount(), full);
  const std::size_t keptBefore = vcos::internal::keptSlabBytes();
  for (void* p : slots) pool.release(p);
  // The empty slabs are kept (far below the bound) and serve new slots
  // without a slab more.
  EXPECT_EQ(vcos::internal::keptSlabBytes(), keptBefore + full * 64 * 1024);
  for (void*& p : slots) p = pool.allocate();
  EXPECT_EQ(pool.slabCount(), full);
  EXPECT_EQ(vcos::internal::keptSlabBytes(), keptBefore);
  for (void* p : slots) pool.release(p);
  pool.releaseKept();
  EXPECT_EQ(pool.slabCount(), 0u) << "the empty slabs were not given back";
  EXPECT_EQ(vcos::internal::keptSlabBytes(), keptBefore);
  // The pool works on as before.
  void* p = pool.allocate();
  void* q = pool.allocate();
  EXPECT_EQ(static_cast<char*>(q) - static_cast<char*>(p), 48);
  EXPECT_EQ(pool.slabCount(), 1u);
  pool.release(q);
  pool.release(p);
}
#endif

}  // namespace
