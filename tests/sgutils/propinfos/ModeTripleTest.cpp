// The triple of a generated property (Selected, SelectedMode, Selected_I on
// a Selectable graphics object): which writes flip the mode, and which
// writes reach doPostSet.
#include <gtest/gtest.h>

#include "PropertyModelClasses.h"
#include "sgutils/propinfos/PropInfoBase.h"
#include "vcos/COSPropInfo.h"

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;

class ModeTriple : public ::testing::Test {
 protected:
  void SetUp() override { object = makeObject(kSelectableClass); }
  void TearDown() override {
    if (object && !object->isDestroyed()) object->deleteObject(COSGetPublicClient());
  }
  std::vector<PostSet>& posts() { return handleOf(object).posts; }
  graphics::mixin::Selectable& selectable() { return selectableOf(object); }

  COSInterfacePtr object;
};

TEST_F(ModeTriple, PublicSetTurnsModeManualBeforeTheValueLands) {
  posts().clear();
  publicSet(object, "Selected", COSValue::fromBool(true));
  EXPECT_TRUE(selectable().getSelected());
  EXPECT_EQ(selectable().getSelectedMode(), AutoManual::Manual);
  // The one post-set comes from Selected_I storing the value; by then the
  // mode had already turned manual.
  ASSERT_EQ(posts().size(), 1u);
  EXPECT_EQ(posts()[0].property, "Selected_I");
  EXPECT_TRUE(posts()[0].twoFlagForm);
  EXPECT_FALSE(posts()[0].flags.limits);
  EXPECT_TRUE(posts()[0].flags.object);
  EXPECT_EQ(posts()[0].selectedModeThen, AutoManual::Manual);
}

TEST_F(ModeTriple, InternalWriteLeavesModeAutoAndPostsOnlyOnChange) {
  posts().clear();
  publicSet(object, "Selected_I", COSValue::fromBool(true));
  EXPECT_TRUE(selectable().getSelected());
  EXPECT_EQ(selectable().getSelectedMode(), AutoManual::Auto);
  EXPECT_EQ(posts().size(), 1u);
  publicSet(object, "Selected_I", COSValue::fromBool(true));
  EXPECT_EQ(posts().size(), 1u) << "an equal write of the internal face marked the object";
}

TEST_F(ModeTriple, ClassSetterWritesInternalFacePublicSetterThePublicFace) {
  selectable().setSelected(true, graphics::datatype::PrivateClient);
  EXPECT_TRUE(selectable().getSelected());
  EXPECT_EQ(selectable().getSelectedMode(), AutoManual::Auto);
  selectable().setSelectionHighlight(false, graphics::datatype::PublicClient);
  EXPECT_FALSE(selectable().getSelectionHighlight());
  EXPECT_EQ(selectable().getSelectionHighlightMode(), AutoManual::Manual);
  EXPECT_EQ(selectable().getSelectedMode(), AutoManual::Auto) << "a mode of another property moved";
  EXPECT_FALSE(selectable().isHighlighted());
}

TEST_F(ModeTriple, OnlyManualToAutoPostsForTheMode) {
  auto modeSets = [&] {
    std::size_t n = 0;
    for (const PostSet& p : posts()) n += p.property == "SelectedMode";
    return n;
  };
  posts().clear();
  publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Auto)));
  EXPECT_EQ(modeSets(), 0u) << "auto to auto";
  publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Manual)));
  EXPECT_EQ(modeSets(), 0u) << "auto to manual";
  publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Manual)));
  EXPECT_EQ(modeSets(), 0u) << "manual to manual";
  publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Auto)));
  ASSERT_EQ(modeSets(), 1u) << "manual to auto";
  const PostSet& post = posts().back();
  EXPECT_TRUE(post.twoFlagForm);
  EXPECT_FALSE(post.flags.limits);
  EXPECT_TRUE(post.flags.object);
  EXPECT_EQ(selectable().getSelectedMode(), AutoManual::Auto);
}

TEST_F(ModeTriple, ReadsThroughTheClientPathMatchTheMembers) {
  selectable().setSelected(true, graphics::datatype::PrivateClient);
  EXPECT_TRUE(publicGet(object, "Selected").asBool());
  EXPECT_TRUE(publicGet(object, "Selected_I").asBool());
  EXPECT_EQ(*publicGet(object, "SelectedMode").asPointer<const unsigned char>(), 0);
  publicSet(object, "SelectedMode", COSValue(modeWord(AutoManual::Manual)));
  EXPECT_EQ(*publicGet(object, "SelectedMode").asPointer<const unsigned char>(), 1);
  // The factory values: Selected_I takes the type's default, SelectionHighlight_I the literal on.
  EXPECT_FALSE(prop(object, "Selected_I")->getFactoryDefault().asBool());
  EXPECT_TRUE(prop(object, "SelectionHighlight")->getFactoryDefault().asBool());
}

TEST_F(ModeTriple, ObjectWithoutTheBlockReadsModeFactoryDefaultAndNullInternal) {
  COSInterfacePtr plain = makeObject(kFlagsClass);
  COSPropInfo* mode = prop(object, "SelectedMode");
  COSPropInfo* internal = prop(object, "Selected_I");
  const COSValue m = mode->getValue(plain.get());
  ASSERT_FALSE(m.isEmpty());
  EXPECT_EQ(*m.asPointer<const unsigned char>(), 0);
  EXPECT_TRUE(internal->getValue(plain.get()).isEmpty());
  // Writes to an object without the block do nothing and raise nothing.
  internal->setValue(plain.get(), COSValue::fromBool(true));
  mode->setValue(plain.get(), COSValue(modeWord(AutoManual::Manual)));
  EXPECT_TRUE(handleOf(plain).posts.empty());
  plain->deleteObject(COSGetPublicClient());
}

TEST_F(ModeTriple, FlagWordsReadBitByBit) {
  auto* selected = dynamic_cast<sgutils::PropInfoBase*>(prop(object, "Selected"));
  auto* mode = dynamic_cast<sgutils::PropInfoBase*>(prop(object, "SelectedMode"));
  auto* highlightMode = dynamic_cast<sgutils::PropInfoBase*>(prop(object, "SelectionHighlightMode"));
  ASSERT_TRUE(selected && mode && highlightMode);
  EXPECT_TRUE(selected->isDependent());
  EXPECT_TRUE(selected->isVisible());
  EXPECT_TRUE(selected->isTransient());
  EXPECT_FALSE(selected->isResetAllowed());
  EXPECT_FALSE(mode->isVisible());
  EXPECT_FALSE(mode->isResetAllowed());
  EXPECT_TRUE(highlightMode->isResetAllowed()) << "556 differs from 548 by the reset bit";
  EXPECT_FALSE(selected->isAbortSet()) << "AbortSet with the global switch off";
  {
    AbortSetOn on;
    EXPECT_TRUE(selected->isAbortSet());
    EXPECT_FALSE(mode->isAbortSet());
  }
  EXPECT_STREQ(selected->getDescription(), "Selected PropInfo");
}

TEST(ColourTriple, ValueHeldInTheBlockFollowsTheSameModeRules) {
  using graphics::datatype::RGBAColor;
  COSInterfacePtr object = makeObject(kFlagsClass);
  JournalingHandle& h = handleOf(object);
  h.posts.clear();
  const RGBAColor red(1, 0, 0), blue(0, 0, 1);
  publicSet(object, "EdgeColor_I", COSValue(&red));
  EXPECT_EQ(h.edgeColor, red);
  EXPECT_EQ(h.edgeColorMode, 0) << "the internal face moved the mode";
  publicSet(object, "EdgeColor_I", COSValue(&red));
  EXPECT_EQ(h.posts.size(), 1u) << "an equal colour marked the object";
  publicSet(object, "EdgeColor", COSValue(&blue));
  EXPECT_EQ(h.edgeColor, blue);
  EXPECT_EQ(h.edgeColorMode, 1);
  const COSValue read = publicGet(object, "EdgeColor");
  EXPECT_EQ(*read.asPointer<const RGBAColor>(), blue);
  object->releasePropertyValue(COSGetPublicClient(), prop(object, "EdgeColor"), read);
  object->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::propmodel
