// Applying defaults to a new or reset object: which ancestors' stores count
// and in what order, and how the pairs meet the mode triples (manual kept,
// internal faces written, modes last, reset-only).
#include <gtest/gtest.h>

#include "DefaultStoreClasses.h"
#include "sgutils/defaults/DefaultProp.h"
#include "support/ErrorId.h"

namespace sgtest::defaults {
namespace {

using graphics::datatype::AutoManual;
using sgutils::DefaultProp;
using sgutils::DefaultPropString;
using sgutils::PropValuePairs;

void store(const COSInterfacePtr& on, const char* defaultName, Arr value) {
  DefaultProp(on).set(DefaultPropString(defaultName, false), value.get());
}

std::vector<std::string> namesOf(const PropValuePairs& pairs) {
  std::vector<std::string> out;
  for (const auto& p : pairs) out.push_back(p.first);
  return out;
}

TEST(DefaultApplication, CollectsTheObjectsClassRootFirstSoTheNearestAncestorWins) {
  COSInterfacePtr top = make(kTop);
  COSInterfacePtr middle = make(kMiddle, top);
  store(top, "defaultLineshapeWidth", number(2));
  store(top, "defaultLineshapeTag", text("top"));
  store(middle, "defaultLineshapeWidth", number(3));
  store(middle, "defaultRectangleshapeWidth", number(9));  // another class
  store(middle, "defaultEllipseshapeWidth", number(8));    // the middle's own class

  COSInterfacePtr leaf = make(kLeaf, middle);
  PropValuePairs pairs = SGHandle::fromObject(leaf.get())->getDefaultPropValuePairs(middle);
  EXPECT_EQ(namesOf(pairs), (std::vector<std::string>{"Width", "Tag", "Width"}));
  // The object's own store is not asked.
  store(leaf, "defaultLineshapeWidth", number(7));

  SGHandle::fromObject(leaf.get())->applyDefaultProperties(middle, false);
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 3);
  EXPECT_EQ(textOf(getProp(leaf, "Tag").get()), "top");
  EXPECT_FALSE(SGHandle::fromObject(leaf.get())->isApplyingDefaults());

  COSInterfacePtr onlyTop = make(kLeaf, top);
  SGHandle::fromObject(onlyTop.get())->applyDefaultProperties(top, false);
  EXPECT_EQ(numberOf(getProp(onlyTop, "Width").get()), 2);
  EXPECT_TRUE(SGHandle::fromObject(onlyTop.get())->getDefaultPropValuePairs(nullptr).empty());
}

TEST(DefaultApplication, AStoredNameOfNoKnownClassDoesNotStopTheOthers) {
  COSInterfacePtr top = make(kTop);
  const char* names[] = {"defaultNotAClassWidth", "defaultLineshapeWidth"};
  Arr s(vxCreateStructMatrix(1, 1, 2, names));
  vxSetFieldByNumber(s.get(), 0, 0, vxCreateDoubleScalar(5));
  vxSetFieldByNumber(s.get(), 0, 1, vxCreateDoubleScalar(6));
  SGHandle::fromObject(top.get())->setDefaultProp(s.get());
  COSInterfacePtr leaf = make(kLeaf, top);
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, false);
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 6);
}

TEST(DefaultApplication, WritesInternalFacesSoModesStayAutomatic) {
  COSInterfacePtr top = make(kTop);
  store(top, "defaultLineshapeSelected", text("on"));
  store(top, "defaultLineshapeEdgeColor", rgb(1, 0, 0));
  COSInterfacePtr leaf = make(kLeaf, top);
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, false);
  EXPECT_TRUE(selectableOf(leaf).getSelected());
  EXPECT_EQ(selectableOf(leaf).getSelectedMode(), AutoManual::Auto);
  EXPECT_DOUBLE_EQ(handleOf(leaf).edgeColor.red(), 1.0f);
  EXPECT_EQ(handleOf(leaf).edgeColorMode, 0);
}

TEST(DefaultApplication, ManualPropertiesKeepTheirValueButAStoredModeStillApplies) {
  COSInterfacePtr top = make(kTop);
  store(top, "defaultLineshapeEdgeColor", rgb(1, 0, 0));
  COSInterfacePtr leaf = make(kLeaf, top);
  setProp(leaf, "EdgeColor", rgb(0, 0, 1).get());  // the user's value: manual
  ASSERT_EQ(handleOf(leaf).edgeColorMode, 1);
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, false);
  EXPECT_DOUBLE_EQ(handleOf(leaf).edgeColor.blue(), 1.0f);

  // A stored mode is written in the second pass and hands the property back.
  store(top, "defaultLineshapeEdgeColorMode", text("auto"));
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, false);
  EXPECT_EQ(handleOf(leaf).edgeColorMode, 0);
  EXPECT_DOUBLE_EQ(handleOf(leaf).edgeColor.blue(), 1.0f);
}

TEST(DefaultApplication, ModesAreWrittenAfterEveryValue) {
  COSInterfacePtr top = make(kTop);
  // The mode comes first in the store; applied in order it would shut out
  // the colour that follows.
  store(top, "defaultLineshapeEdgeColorMode", text("manual"));
  store(top, "defaultLineshapeEdgeColor", rgb(0, 1, 0));
  COSInterfacePtr leaf = make(kLeaf, top);
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, false);
  EXPECT_DOUBLE_EQ(handleOf(leaf).edgeColor.green(), 1.0f);
  EXPECT_EQ(handleOf(leaf).edgeColorMode, 1);
}

TEST(DefaultApplication, ResetOnlySkipsWhatCannotBeResetAndResetReappliesDefaults) {
  COSInterfacePtr top = make(kTop);
  store(top, "defaultLineshapeSelected", text("on"));
  store(top, "defaultLineshapeWidth", number(5));
  COSInterfacePtr leaf = make(kLeaf, top);
  SGHandle::fromObject(leaf.get())->applyDefaultProperties(top, true);
  EXPECT_FALSE(selectableOf(leaf).getSelected());  // Selected allows no reset
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 5);

  setProp(leaf, "Width", number(8).get());
  SGHandle::Reset(leaf);  // class defaults, then the stored ones again
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 5);
}

TEST(DefaultApplication, PairsTheObjectCannotTakeAreSkippedAndAFailedWriteStopsTheRest) {
  COSInterfacePtr leaf = make(kLeaf);
  PropValuePairs pairs;
  pairs.emplace_back("NoSuchProperty", number(1));
  pairs.emplace_back("Locked", number(2));        // only the class may set it
  pairs.emplace_back("EdgeColorMode", nullptr);   // a mode without a value
  pairs.emplace_back("Width", number(4));
  EXPECT_EQ(errorId([&] { DefaultProp::setPVPairs(leaf, pairs, false); }), "");
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 4);
  EXPECT_EQ(numberOf(getProp(leaf, "Locked").get()), 0);

  PropValuePairs failing;
  failing.emplace_back("EdgeColor", number(3));  // not a colour
  failing.emplace_back("Width", number(6));
  EXPECT_NE(errorId([&] { DefaultProp::setPVPairs(leaf, failing, false); }), "");
  EXPECT_EQ(numberOf(getProp(leaf, "Width").get()), 4);
}

}  // namespace
}  // namespace sgtest::defaults
