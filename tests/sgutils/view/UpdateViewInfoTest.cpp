// The update block: the undecided hierarchy flags, the child layout keyed by
// object identity with its first-entry rule, and what a copy shares.
#include <gtest/gtest.h>

#include "sgdatatypes/AlphaMap.h"
#include "sgdatatypes/ColorMap.h"
#include "sgutils/propinfos/PropertyModelClasses.h"
#include "sgutils/view/UpdateViewInfo.h"

namespace {

using gui_objects::Rectangle2i;
using sgutils::UpdateViewInfo;

// The default counts as visible while nobody has said so; false is an answer too.
TEST(UpdateViewInfoHierarchy, FlagsAreUndecidedUntilSetEvenToFalse) {
  UpdateViewInfo info;
  EXPECT_TRUE(info.getIsInVisibleHierarchy());
  EXPECT_FALSE(info.isInVisibleHierarchyInitialized());
  EXPECT_FALSE(info.isInDrawnowSyncableHierarchyInitialized());

  info.setIsInVisibleHierarchy(false);
  EXPECT_FALSE(info.getIsInVisibleHierarchy());
  EXPECT_TRUE(info.isInVisibleHierarchyInitialized());
  EXPECT_FALSE(info.isInDrawnowSyncableHierarchyInitialized()) << "the two flags are independent";

  info.setIsInDrawnowSyncableHierarchy(false);
  EXPECT_FALSE(info.isInDrawnowSyncableHierarchy());
  EXPECT_TRUE(info.isInDrawnowSyncableHierarchyInitialized());
}

class UpdateViewInfoLayout : public ::testing::Test {
 protected:
  void SetUp() override {
    a_ = sgtest::propmodel::makeObject(sgtest::propmodel::kFlagsClass);
    b_ = sgtest::propmodel::makeObject(sgtest::propmodel::kFlagsClass);
  }
  void TearDown() override {
    for (auto& object : {a_, b_})
      if (object && !object->isDestroyed()) object->deleteObject(COSGetPublicClient());
  }
  COSInterfacePtr a_, b_;
};

TEST_F(UpdateViewInfoLayout, FirstRectangleStaysUntilTheMapIsCleared) {
  UpdateViewInfo info;
  EXPECT_FALSE(info.isChildCompInManagedLayout());
  info.setChildLayout(a_, {1, 2, 30, 40});
  info.setChildLayout(a_, {9, 9, 9, 9});
  EXPECT_EQ(info.getChildPosition(a_), (Rectangle2i{1, 2, 30, 40}));
  EXPECT_TRUE(info.isChildCompInManagedLayout());

  info.clearManagedLayout();
  EXPECT_FALSE(info.hasChildPosition(a_));
  EXPECT_FALSE(info.isChildCompInManagedLayout());
  info.setChildLayout(a_, {9, 9, 9, 9});
  EXPECT_EQ(info.getChildPosition(a_), (Rectangle2i{9, 9, 9, 9}));
}

TEST_F(UpdateViewInfoLayout, ChildrenAreToldApartByIdentity) {
  UpdateViewInfo info;
  info.setChildLayout(a_, {1, 1, 10, 10});
  EXPECT_TRUE(info.hasChildPosition(a_));
  EXPECT_TRUE(info.hasChildPosition(COSInterfacePtr(a_, COSWeakReference))) << "the kind of reference is no part of the key";
  EXPECT_FALSE(info.hasChildPosition(b_));
  EXPECT_FALSE(info.hasChildPosition(COSInterfacePtr()));
  EXPECT_EQ(info.getChildPosition(b_), Rectangle2i{}) << "no entry: the empty rectangle, not another child's";

  info.setChildLayout(b_, {2, 2, 20, 20});
  EXPECT_EQ(info.getChildPosition(a_), (Rectangle2i{1, 1, 10, 10}));
  EXPECT_EQ(info.getChildPosition(b_), (Rectangle2i{2, 2, 20, 20}));
}

TEST_F(UpdateViewInfoLayout, AnEntryDoesNotKeepItsChildAlive) {
  UpdateViewInfo info;
  info.setChildLayout(a_, {1, 1, 10, 10});
  COSInterfacePtr weak(a_, COSWeakReference);
  a_.reset();
  ASSERT_TRUE(weak->isDestroyed()) << "the layout map held the child strongly";
  EXPECT_TRUE(info.hasChildPosition(weak)) << "the identity stays valid while the entry exists";
}

TEST_F(UpdateViewInfoLayout, ACopyOwnsItsMapAndNameAndSharesTheColourMaps) {
  const graphics::datatype::ColorMap colorMap;
  const graphics::datatype::AlphaMap alphaMap;
  UpdateViewInfo info;
  info.setColorMap(&colorMap);
  info.setAlphaMap(&alphaMap);
  info.setFixedWidthFontName(u"Mono");
  info.setChildLayout(a_, {1, 1, 10, 10});

  UpdateViewInfo copy = info;
  copy.clearManagedLayout();
  copy.setChildLayout(b_, {2, 2, 20, 20});
  copy.setFixedWidthFontName(u"Serif");

  EXPECT_TRUE(info.hasChildPosition(a_));
  EXPECT_FALSE(info.hasChildPosition(b_));
  EXPECT_EQ(info.getFixedWidthFontName(), u"Mono");
  EXPECT_EQ(copy.getColorMap(), &colorMap);
  EXPECT_EQ(copy.getAlphaMap(), &alphaMap);
}

}  // namespace
