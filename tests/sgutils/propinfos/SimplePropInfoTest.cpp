// The definition family on GraphicsPickable's HitTest (a moded storage):
// the two set behaviours, observers, the mode face and what the qualities of
// the public and internal faces report.
#include <gtest/gtest.h>

#include <memory>

#include "PropertyModelClasses.h"
#include "sgutils/propinfos/SimplePropInfoBase.h"

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;

class SimpleProperty : public ::testing::Test {
 protected:
  void SetUp() override {
    object = makeObject(kSelectableClass);
    handleOf(object).posts.clear();
    observer = std::make_shared<sgutils::PropertyObserver>([this](COSValue v) { told.push_back(v.asBool()); });
    selectableOf(object).getHitTestStorage().addObserver(observer);
  }
  void TearDown() override { object->deleteObject(COSGetPublicClient()); }
  std::size_t postsFor(const char* name) {
    std::size_t n = 0;
    for (const PostSet& p : handleOf(object).posts) n += p.property == name;
    return n;
  }
  void setInternal(bool v) { publicSet(object, "HitTest_I", COSValue::fromBool(v)); }

  COSInterfacePtr object;
  std::shared_ptr<sgutils::PropertyObserver> observer;
  std::vector<bool> told;
};

TEST_F(SimpleProperty, NewBehaviourPostsEveryWriteOfANonAbortSetValue) {
  // With the global switch off nothing is AbortSet.
  setInternal(true);
  setInternal(true);
  EXPECT_EQ(postsFor("HitTest_I"), 2u) << "an equal write is stored and posted";
  EXPECT_EQ(told.size(), 2u);
}

TEST_F(SimpleProperty, NewBehaviourDropsAnEqualAbortSetWriteWhole) {
  AbortSetOn on;
  setInternal(false);
  EXPECT_EQ(postsFor("HitTest_I"), 1u);
  setInternal(false);
  EXPECT_EQ(postsFor("HitTest_I"), 1u) << "an equal AbortSet write reached doPostSet";
  EXPECT_EQ(told.size(), 1u) << "an observer was told of a dropped write";
  EXPECT_FALSE(selectableOf(object).getHitTest());
}

TEST_F(SimpleProperty, OldBehaviourStoresAlwaysAndPostsOnlyAChange) {
  OldSetBehaviour old;
  setInternal(true);  // the initial value is on
  EXPECT_EQ(postsFor("HitTest_I"), 0u);
  EXPECT_TRUE(told.empty());
  setInternal(false);
  EXPECT_EQ(postsFor("HitTest_I"), 1u);
  ASSERT_EQ(told.size(), 1u);
  EXPECT_FALSE(told[0]);
  AbortSetOn on;
  setInternal(false);
  EXPECT_EQ(postsFor("HitTest_I"), 1u);
}

TEST_F(SimpleProperty, PublicSetMakesTheModeManualWithoutAPostForTheMode) {
  publicSet(object, "HitTest", COSValue::fromBool(false));
  EXPECT_EQ(selectableOf(object).getHitTestMode(), AutoManual::Manual);
  EXPECT_FALSE(selectableOf(object).getHitTest());
  EXPECT_EQ(postsFor("HitTestMode"), 0u) << "the definition family flips the mode by a plain store";
  EXPECT_EQ(postsFor("HitTest"), 1u);
  publicSet(object, "HitTestMode", COSValue(modeWord(AutoManual::Auto)));
  EXPECT_EQ(postsFor("HitTestMode"), 1u);
  setInternal(true);
  EXPECT_EQ(selectableOf(object).getHitTestMode(), AutoManual::Auto) << "the internal face moved the mode";
}

TEST_F(SimpleProperty, PublicFaceWithModeIsDependentInternalFaceIsHidden) {
  auto* pub = dynamic_cast<sgutils::SimplePropInfoBase*>(prop(object, "HitTest"));
  auto* internal = dynamic_cast<sgutils::SimplePropInfoBase*>(prop(object, "HitTest_I"));
  ASSERT_TRUE(pub && internal);
  EXPECT_TRUE(pub->isDependent());
  EXPECT_FALSE(pub->isResetAllowed());
  EXPECT_TRUE(pub->isVisible());
  EXPECT_TRUE(pub->isExternal());
  EXPECT_FALSE(internal->isVisible());
  EXPECT_FALSE(internal->isListenerSetAllowed());
  EXPECT_TRUE(internal->isResetAllowed());
  EXPECT_EQ(prop(object, "PickableParts")->getMemberSetAccess(), PublicAccess);
  EXPECT_STREQ(prop(object, "HitTestMode")->getDescription(), "HitTestMode PropInfo");
}

TEST_F(SimpleProperty, ObserverThatRemovesItselfDoesNotDisturbTheRest) {
  auto& storage = selectableOf(object).getHitTestStorage();
  int second = 0;
  auto self = std::make_shared<sgutils::PropertyObserver>();
  *self = [&](COSValue) { storage.removeObserver(self); };
  storage.addObserver(self);
  storage.addObserver(std::make_shared<sgutils::PropertyObserver>([&](COSValue) { ++second; }));
  setInternal(false);
  setInternal(true);
  EXPECT_EQ(second, 2);
  EXPECT_EQ(told.size(), 2u);
}

}  // namespace
}  // namespace sgtest::propmodel
