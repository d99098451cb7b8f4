// An object and its data blocks in one slot.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "TestGraphicsClasses.h"
#include "objects/MixinTestSupport.h"
#include "sgutils/copy/Copyable.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/vcos.h"

using namespace sgtest;

namespace {

class ObjectSlot : public ::testing::Test {
 protected:
  void SetUp() override { registerTestClasses(); }
};

std::uintptr_t address(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace

TEST_F(ObjectSlot, BlocksFollowTheirObjectOnceTheClassLayoutIsKnown) {
  // The first object of the class may set its layout; later ones use it.
  COSInterfacePtr first = construct({});
  std::vector<COSInterfacePtr> objects;
  for (int i = 0; i < 3; ++i) objects.push_back(construct({}));
  for (const COSInterfacePtr& o : objects) {
    const auto block = address(static_cast<SGReference*>(blockOf(o)));
    EXPECT_GT(block, address(o.get()));
    EXPECT_LT(block, address(o.get()) + 4096) << "the block is not in its object's slot";
    EXPECT_EQ(blockOf(o)->getCOSObject(), o.get());
    // Every block, the Copyable data too, lies where the class's layout puts
    // it: the object keeps no block pointers.
    EXPECT_TRUE(vcos::hasFixedBlocks(o.get()));
    const auto copyable = address(sgutils::Copyable::dataOf(o.get()));
    EXPECT_GT(copyable, address(o.get()));
    EXPECT_LT(copyable, address(o.get()) + 4096) << "the Copyable data is not in its object's slot";
  }
  // Blocks freed with their object's slot are not handed out again by the
  // block pools: objects made after a deletion get blocks of their own.
  objects[1]->deleteObject(COSGetPublicClient());
  objects[1].reset();
  COSInterfacePtr a = construct({}), b = construct({});
  EXPECT_NE(static_cast<void*>(blockOf(a)), static_cast<void*>(blockOf(b)));
  EXPECT_EQ(blockOf(a)->getCOSObject(), a.get());
  EXPECT_EQ(blockOf(b)->getCOSObject(), b.get());
  for (COSInterfacePtr* o : {&first, &objects[0], &objects[2], &a, &b}) {
    (*o)->deleteObject(COSGetPublicClient());
    o->reset();
  }
}

TEST_F(ObjectSlot, TheGraphicsBlockIsFoundForEachClassInTurn) {
  // Two classes whose Graphics blocks lie at different indices, met in
  // turn: the index kept for one class must not serve the other.
  const COSID graphics("vantel.graphics.Graphics");
  COSInterfacePtr a = construct({});
  COSInterfacePtr b = mixins::make("sg2utils.TestLoadObj");
  ASSERT_NE(vcos::blockSlotOf(a->getClass(), graphics), vcos::blockSlotOf(b->getClass(), graphics));
  for (int i = 0; i < 3; ++i)
    for (const COSInterfacePtr& o : {a, b, b, a}) {
      ASSERT_NE(o->getInstanceData(graphics), nullptr);
      EXPECT_EQ(static_cast<void*>(static_cast<SGReference*>(SGHandle::fromObject(o.get()))),
                o->getInstanceData(graphics));
    }
  // No Graphics block: a class object, and an object once deleted.
  EXPECT_EQ(SGHandle::fromObject(a->getClass()), nullptr);
  EXPECT_NE(SGHandle::fromObject(a.get()), nullptr);
  b->deleteObject(COSGetPublicClient());
  EXPECT_EQ(SGHandle::fromObject(b.get()), nullptr);
  a->deleteObject(COSGetPublicClient());
}
