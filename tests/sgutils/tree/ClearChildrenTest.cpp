// Clearing the children of an object: what is deleted and what stays.
#include <gtest/gtest.h>

#include "fixtures/sgutils/tree/TreeClasses.h"
#include "sgutils/objects/TreeNode.gen.h"
#include "sgutils/objects/TreeRoot.gen.h"
#include "sgutils/tree/ClearChildren.h"

namespace sgtest::tree {
namespace {

using List = std::vector<COSInterfacePtr>;

class ClearChildren : public ::testing::Test {
 protected:
  RootScope scope;
  COSInterfacePtr box = make(kContainer, scope.root());
  COSInterfacePtr plain = make(kLeaf, box);
  COSInterfacePtr hidden = make(kLeaf, box, "", HandleVisibility::Off);
  COSInterfacePtr kept = make(kLeaf, box);
  COSInterfacePtr inner = make(kContainer, box);
  COSInterfacePtr exempt = make(kLeaf, inner);
  void SetUp() override { nodeOf(kept).setSerializable(false, graphics::datatype::PublicClient); }
};

TEST_F(ClearChildren, DeletesVisibleChildrenButKeepsExemptOnesAndWhatIsNotSaved) {
  sgutils::clearChildren(box, {exempt}, false);
  EXPECT_TRUE(plain->isDestroyed());
  EXPECT_FALSE(hidden->isDestroyed());
  EXPECT_FALSE(kept->isDestroyed());
  EXPECT_FALSE(inner->isDestroyed());  // an exempt object lies below it
  EXPECT_FALSE(exempt->isDestroyed());
  EXPECT_FALSE(rootOf(scope.root()).getShowHiddenHandles());
}

TEST_F(ClearChildren, WithHiddenDeletesHiddenChildrenToo) {
  sgutils::clearChildren(box, {}, true);
  EXPECT_TRUE(plain->isDestroyed());
  EXPECT_TRUE(hidden->isDestroyed());
  EXPECT_TRUE(inner->isDestroyed());
  EXPECT_TRUE(exempt->isDestroyed());
  EXPECT_FALSE(kept->isDestroyed());
  EXPECT_FALSE(box->isDestroyed());
  EXPECT_FALSE(rootOf(scope.root()).getShowHiddenHandles());
}

}  // namespace
}  // namespace sgtest::tree
