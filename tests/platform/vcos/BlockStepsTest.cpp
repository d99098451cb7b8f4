// The steps that make and free the blocks of an instance at its class's fixed
// offsets: a class info that may skip its shared or null answer is asked
// only by the instances made before the offsets were known and by an
// instance that falls back to a block array; the others skip it on both
// sides.
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/RoomBlocks.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/vcos.h"

namespace {

struct Record {
  bool baseOutside = false;  // the next Base block comes from the heap
  bool topOutside = false;   // the next Top block comes from the heap
  bool topThrows = false;    // the next Top block fails
  int liveBlocks = 0;
  std::vector<std::string> seen;
};
Record& record() {
  static Record r;
  return r;
}

const COSID& baseId() {
  static const COSID id("vstep.Base");
  return id;
}
const COSID& midId() {
  static const COSID id("vstep.Mid");
  return id;
}
const COSID& topId() {
  static const COSID id("vstep.Top");
  return id;
}

// Counts the slots that share it, as a block shared by several classes does.
struct Block {
  int shares = 1;
  std::uint64_t words[3] = {};
};

void* makeBlock(bool outside) {
  ++record().liveBlocks;
  return sgtest::makeRoomBlock<Block>(outside);
}

void freeBlock(void* b) {
  --record().liveBlocks;
  sgtest::freeRoomBlock<Block>(b);
}

using sgtest::foundBlock;

class BaseInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Base"; }
  void* allocateInstance(COSInterface*) override {
    record().seen.push_back("make Base");
    return makeBlock(std::exchange(record().baseOutside, false));
  }
  void deallocateInstance(COSInterface*, void* b) override {
    record().seen.push_back("free Base, shares " + std::to_string(static_cast<Block*>(b)->shares));
    freeBlock(b);
  }
};

// Shares the Base block, counting itself in it: skippable.
class MidInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Mid"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(baseId()); }
  void* allocateInstance(COSInterface* o) override {
    record().seen.push_back("ask Mid");
    auto* shared = static_cast<Block*>(o->getInstanceData(baseId()));
    ++shared->shares;
    return shared;
  }
  void deallocateInstance(COSInterface*, void* b) override {
    record().seen.push_back("free Mid");
    --static_cast<Block*>(b)->shares;
  }
  bool isSharedAnswerSkippable() const override { return true; }
};

// A block of its own; it looks for the Mid block while it is made.
class TopInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Top"; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(midId()); }
  void* allocateInstance(COSInterface* o) override {
    record().seen.push_back(std::string("make Top, Mid ") + foundBlock(o, midId()));
    if (std::exchange(record().topThrows, false)) throw std::runtime_error("no Top block");
    return makeBlock(std::exchange(record().topOutside, false));
  }
  void deallocateInstance(COSInterface* o, void* b) override {
    record().seen.push_back(std::string("free Top, Mid ") + foundBlock(o, midId()));
    freeBlock(b);
  }
};

// No block: skippable. Two such classes, one per test, so that each test
// meets the first instance of its own.
class LeafInfo final : public COSClassInfo {
 public:
  explicit LeafInfo(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  void initializeClass(COSClass* c, const COSClient*) override { c->addSuperclass(topId()); }
  void* allocateInstance(COSInterface*) override {
    record().seen.push_back("ask Leaf");
    return nullptr;
  }
  bool isSharedAnswerSkippable() const override { return true; }

 private:
  const char* name_;
};

class StepNamespace final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "vstep"; }
};

COSInterfacePtr makeLeaf(const char* leaf) {
  static const bool registered = [] {
    COSPackage* p = COSPackage::addNamespace(new StepNamespace);
    p->addClass(new BaseInfo);
    p->addClass(new MidInfo);
    p->addClass(new TopInfo);
    p->addClass(new LeafInfo("Leaf"));
    p->addClass(new LeafInfo("Fallback"));
    return true;
  }();
  (void)registered;
  return COSClass::getClass(COSID(leaf))->createInstance(COSGetPublicClient());
}

COSInterfacePtr makeFallback() { return makeLeaf("vstep.Fallback"); }

using Seen = std::vector<std::string>;

// Deletes `o` and answers what the class infos saw while it went.
Seen deleteSeen(COSInterfacePtr& o) {
  record().seen.clear();
  o->deleteObject(COSGetPublicClient());
  o.reset();
  return record().seen;
}

}  // namespace

TEST(BlockSteps, SkippableAnswersAreAskedUntilTheOffsetsAreKnownAndEveryBlockIsFreedOnce) {
  // The first instance sets the room, the second the offsets and the steps:
  // both ask every info. The others skip Mid and Leaf.
  const Seen everyInfo = {"make Base", "ask Mid", "make Top, Mid found", "ask Leaf"};
  std::vector<COSInterfacePtr> objects;
  for (int i = 0; i < 4; ++i) {
    record().seen.clear();
    objects.push_back(makeLeaf("vstep.Leaf"));
    EXPECT_EQ(record().seen, i < 2 ? everyInfo : (Seen{"make Base", "make Top, Mid found"})) << i;
  }
  for (int i = 1; i < 4; ++i) {
    const COSInterfacePtr& o = objects[i];
    ASSERT_TRUE(vcos::hasFixedBlocks(o.get())) << i;
    // The skipped class still finds the block it shares, at its place.
    EXPECT_EQ(o->getInstanceData(midId()), o->getInstanceData(baseId()));
    EXPECT_NE(o->getInstanceData(topId()), nullptr);
    EXPECT_EQ(o->getInstanceData(COSID("vstep.Leaf")), nullptr);
    EXPECT_EQ(static_cast<Block*>(o->getInstanceData(baseId()))->shares, i < 2 ? 2 : 1) << i;
  }
  EXPECT_EQ(record().liveBlocks, 8);

  // Those that asked every info free by every one; the others by their
  // steps. The shared block goes once, last.
  const Seen freedByEvery = {"free Top, Mid found", "free Mid", "free Base, shares 1"};
  EXPECT_EQ(deleteSeen(objects[0]), freedByEvery);
  EXPECT_EQ(deleteSeen(objects[1]), freedByEvery);
  EXPECT_EQ(deleteSeen(objects[2]), (Seen{"free Top, Mid found", "free Base, shares 1"}));
  objects[3].reset();  // the last reference: deleted by the same steps
  EXPECT_EQ(record().liveBlocks, 0);
}

TEST(BlockSteps, ABlockOffItsPlaceAsksTheSkippedInfosSoTheListedObjectFreesByEveryInfo) {
  std::vector<COSInterfacePtr> first = {makeFallback(), makeFallback()};  // the offsets known

  // Top off its place: Mid, skipped before it, is asked then, and Leaf after.
  record().seen.clear();
  record().topOutside = true;
  COSInterfacePtr apart = makeFallback();
  EXPECT_EQ(record().seen, (Seen{"make Base", "make Top, Mid found", "ask Mid", "ask Leaf"}));
  EXPECT_FALSE(vcos::hasFixedBlocks(apart.get()));
  EXPECT_EQ(apart->getInstanceData(midId()), apart->getInstanceData(baseId()));
  EXPECT_EQ(static_cast<Block*>(apart->getInstanceData(baseId()))->shares, 2);
  EXPECT_EQ(deleteSeen(apart), (Seen{"free Top, Mid found", "free Mid", "free Base, shares 1"}));

  // Base off its place: every info after it is asked.
  record().seen.clear();
  record().baseOutside = true;
  apart = makeFallback();
  EXPECT_EQ(record().seen, (Seen{"make Base", "ask Mid", "make Top, Mid found", "ask Leaf"}));
  EXPECT_FALSE(vcos::hasFixedBlocks(apart.get()));
  EXPECT_EQ(deleteSeen(apart), (Seen{"free Top, Mid found", "free Mid", "free Base, shares 1"}));

  // A failing Top after a Base off its place: what was made is freed once.
  record().seen.clear();
  record().baseOutside = record().topThrows = true;
  EXPECT_THROW(makeFallback(), std::runtime_error);
  EXPECT_EQ(record().seen, (Seen{"make Base", "ask Mid", "make Top, Mid found", "free Mid", "free Base, shares 1"}));

  // A failing Top at the fixed places frees the Base block alone.
  record().seen.clear();
  record().topThrows = true;
  EXPECT_THROW(makeFallback(), std::runtime_error);
  EXPECT_EQ(record().seen, (Seen{"make Base", "make Top, Mid found", "free Base, shares 1"}));

  COSInterfacePtr again = makeFallback();
  EXPECT_TRUE(vcos::hasFixedBlocks(again.get()));
  deleteSeen(again);
  for (COSInterfacePtr& o : first) deleteSeen(o);
  EXPECT_EQ(record().liveBlocks, 0);
}
