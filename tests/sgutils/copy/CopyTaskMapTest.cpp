// The map from source object to task: growth at half full and room made
// ahead must keep every entry findable and refuse an object met twice.
#include <gtest/gtest.h>

#include <array>
#include <cstddef>

#include "sgutils/copy/CopyTaskMap.h"

namespace {

// Only addresses are compared: 16-byte steps, as objects are aligned.
struct alignas(16) Slot {
  unsigned char bytes[16];
};

const COSInterface* objectAt(const Slot* slot) { return reinterpret_cast<const COSInterface*>(slot); }
sgutils::CopyTask* taskAt(std::size_t i) { return reinterpret_cast<sgutils::CopyTask*>((i + 1) * 64); }

TEST(CopyTaskMap, EveryEntryIsFoundAcrossGrowthAndReservedRoomAndDuplicatesAreRefused) {
  static std::array<Slot, 3000> objects;
  sgutils::CopyTaskMap map;
  EXPECT_EQ(map.find(objectAt(&objects[0])), nullptr);
  EXPECT_EQ(map.find(nullptr), nullptr);
  // Grown one step at a time for the first part, then with room made ahead
  // for more than is added (as a container's children are), then past it.
  for (std::size_t i = 0; i < 1000; ++i) ASSERT_TRUE(map.insert(objectAt(&objects[i]), taskAt(i)));
  map.reserve(map.size() + 1500);
  map.reserve(10);  // less than held: nothing may be lost
  for (std::size_t i = 1000; i < objects.size(); ++i) ASSERT_TRUE(map.insert(objectAt(&objects[i]), taskAt(i)));
  EXPECT_EQ(map.size(), objects.size());
  for (std::size_t i = 0; i < objects.size(); ++i) ASSERT_EQ(map.find(objectAt(&objects[i])), taskAt(i)) << i;
  EXPECT_FALSE(map.insert(objectAt(&objects[17]), taskAt(99)));
  EXPECT_EQ(map.find(objectAt(&objects[17])), taskAt(17));
  EXPECT_EQ(map.size(), objects.size());
  const Slot outside{};
  EXPECT_FALSE(map.contains(objectAt(&outside)));
}

}  // namespace
