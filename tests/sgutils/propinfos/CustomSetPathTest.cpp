// The set path of the graphics metaclass: which properties it turns on, the
// dirty flags it hands to doPostSet, AbortSet, and the attributes that the
// library's own properties answer themselves.
#include <gtest/gtest.h>

#include "PropertyModelClasses.h"
#include "sgutils/metadata/SGCustomMetaProperty.h"
#include "vcos/COSClass.h"
#include "vcos/COSCustomMetaClass.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgtest::propmodel {
namespace {

class CustomSetPath : public ::testing::Test {
 protected:
  void SetUp() override {
    object = makeObject(kFlagsClass);
    handleOf(object).posts.clear();
  }
  void TearDown() override { object->deleteObject(COSGetPublicClient()); }
  std::vector<PostSet>& posts() { return handleOf(object).posts; }
  void set(const char* name, double v) { publicSet(object, name, COSValue::fromDouble(v)); }

  COSInterfacePtr object;
};

TEST_F(CustomSetPath, AttributesTurnOnTheCustomSetOnlyWhereTheyAreSet) {
  COSClass* cls = object->getClass();
  EXPECT_TRUE(cls->isCustomSetOn(prop(object, "ObjectOnly")));
  EXPECT_TRUE(cls->isCustomSetOn(prop(object, "LegendOnly"))) << "the legend alone still takes the custom path";
  EXPECT_FALSE(cls->isCustomSetOn(prop(object, "Plain")));
  // Outside the container families the pass clears UsedInUpdate.
  EXPECT_FALSE(SGCustomMetaProperty::of(prop(object, "ObjectOnly"))->usedInUpdate);
}

TEST_F(CustomSetPath, AffectsObjectPostsTheObjectFlag) {
  set("ObjectOnly", 2);
  EXPECT_EQ(publicGet(object, "ObjectOnly").asDouble(), 2);
  ASSERT_EQ(posts().size(), 1u);
  EXPECT_EQ(posts()[0].property, "ObjectOnly");
  EXPECT_FALSE(posts()[0].twoFlagForm);
  EXPECT_TRUE(posts()[0].flags.object);
  EXPECT_FALSE(posts()[0].flags.limits);
  EXPECT_FALSE(posts()[0].flags.legend);
  EXPECT_FALSE(posts()[0].flags.structUpdate);
}

TEST_F(CustomSetPath, LegendCountsOnlyBesideObjectOrLimits) {
  set("LegendOnly", 1);
  EXPECT_EQ(publicGet(object, "LegendOnly").asDouble(), 1) << "the store happens all the same";
  EXPECT_TRUE(posts().empty()) << "AffectsLegend alone marked the object";
  set("ObjectAndLegend", 1);
  set("LimitsAndLegend", 1);
  ASSERT_EQ(posts().size(), 2u);
  EXPECT_TRUE(posts()[0].flags.object && posts()[0].flags.legend && !posts()[0].flags.limits);
  EXPECT_TRUE(posts()[1].flags.limits && posts()[1].flags.legend && !posts()[1].flags.object);
}

TEST_F(CustomSetPath, OutsideTheContainersAbortSetIsNotConsulted) {
  // UsedInUpdate is cleared on classes outside the container families, and
  // AbortSet needs it: an equal value marks the object again.
  set("Abortable", 3);
  set("Abortable", 3);
  EXPECT_EQ(posts().size(), 2u);
}

TEST_F(CustomSetPath, InternalComponentRefusesAnEmptyValueAndStoresNothing) {
  matrix::unique_vxArray empty(vxCreateDoubleMatrix(0, 0, vxREAL));
  try {
    publicSet(object, "Component", COSValue(empty.get()));
    FAIL() << "an empty internal component was accepted";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:class:InvalidHandle");
  }
  const COSValue stored = publicGet(object, "Component");
  EXPECT_TRUE(stored.isEmpty()) << "the refused value was stored";
  object->releasePropertyValue(COSGetPublicClient(), prop(object, "Component"), stored);
  EXPECT_TRUE(posts().empty());
}

// Internal components: values with a "NodeParent", hooked into the tree
// below the object through its "addNode" and "replaceChild".
class InternalComponent : public CustomSetPath {
 protected:
  void SetUp() override {
    CustomSetPath::SetUp();
    nodeCalls().clear();
  }
  void TearDown() override {
    for (auto& c : children) c->deleteObject(COSGetPublicClient());
    CustomSetPath::TearDown();
  }
  COSInterfacePtr child(const COSInterfacePtr& parent = COSInterfacePtr()) {
    COSInterfacePtr c = makeObject(kNodeChildClass);
    children.push_back(c);
    if (parent) setParent(c, parent);
    return c;
  }
  static void setParent(const COSInterfacePtr& c, const COSInterfacePtr& parent) {
    matrix::unique_vxArray p(omCreateVCOSScalar(parent));
    publicSet(c, "NodeParent", COSValue(p.get()));
  }
  void setComponent(const COSInterfacePtr& c) {
    matrix::unique_vxArray value(omCreateVCOSScalar(c));
    publicSet(object, "Component", COSValue(value.get()));
  }
  COSInterfacePtr component() {
    const COSValue v = publicGet(object, "Component");
    COSInterfacePtr c = v.isEmpty() || vxIsEmpty(v.asPointer<const vxArray>())
                            ? COSInterfacePtr()
                            : omGetArrayElement(v.asPointer<const vxArray>(), 0);
    object->releasePropertyValue(COSGetPublicClient(), prop(object, "Component"), v);
    return c;
  }

  std::vector<COSInterfacePtr> children;
};

TEST_F(InternalComponent, AFirstComponentIsAddedBelowTheObjectAndALaterOneReplacesIt) {
  const COSInterfacePtr first = child();
  setComponent(first);
  EXPECT_EQ(component(), first);
  setParent(first, object);  // what the object's addNode would have done
  const COSInterfacePtr second = child();
  setComponent(second);
  EXPECT_EQ(component(), second);
  const std::vector<std::string> expected = {
      "addNode sg2utils.TestPropertyFlags sg2utils.TestNodeChild",
      "replaceChild sg2utils.TestPropertyFlags sg2utils.TestNodeChild sg2utils.TestNodeChild"};
  EXPECT_EQ(nodeCalls(), expected);
}

TEST_F(InternalComponent, AComponentThatHasAParentIsStoredWithoutNodeCalls) {
  const COSInterfacePtr owned = child(child());
  setComponent(owned);
  EXPECT_EQ(component(), owned);
  EXPECT_TRUE(nodeCalls().empty());
}

TEST_F(InternalComponent, AParentWithoutReplaceChildIsReportedAndNothingIsStored) {
  const COSInterfacePtr first = child(child());  // its parent has no node methods
  setComponent(first);
  try {
    setComponent(child());
    FAIL() << "a parent without replaceChild was accepted";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:sgutils:NoMethodFound");
  }
  EXPECT_EQ(component(), first);
  EXPECT_TRUE(posts().empty());
}

TEST_F(CustomSetPath, UpdateFlagsAreLoggedOnlyWhenTheChannelIsOn) {
  foundation::log::LogCapture capture;
  set("ObjectAndLegend", 7);
  EXPECT_TRUE(capture.records().empty()) << "a silent channel wrote a record";
  foundation::log::setChannelLevel("sgcustommetadata::customset", foundation::log::kDebug);
  set("ObjectAndLegend", 8);
  set("LegendOnly", 8);
  foundation::log::setChannelLevel("sgcustommetadata::customset", 0);
  std::vector<std::string> texts;
  for (const auto& r : capture.records())
    if (r.channel == "sgcustommetadata::customset") texts.push_back(r.text);
  const std::vector<std::string> expected = {
      "Update Flags - Class: sg2utils.TestPropertyFlags Property: ObjectAndLegend,  DirtyFlags:  object legend",
      "doMarkDirty: true",
      "Update Flags - Class: sg2utils.TestPropertyFlags Property: LegendOnly,  DirtyFlags: ",
  };
  EXPECT_EQ(texts, expected);
}

TEST_F(CustomSetPath, PlainPropertyKeepsTheOrdinaryPath) {
  set("Plain", 5);
  EXPECT_EQ(publicGet(object, "Plain").asDouble(), 5);
  EXPECT_TRUE(posts().empty());
}

TEST(GraphicsMetaProperty, LibraryPropertiesAnswerResettableAndDeepCopyThemselves) {
  COSInterfacePtr object = makeObject(kSelectableClass);
  COSClass* cls = object->getClass();
  SGCustomMetaProperty* mode = SGCustomMetaProperty::of(prop(object, "SelectionHighlightMode"));
  ASSERT_NE(mode, nullptr);
  EXPECT_TRUE(mode->getResettable());
  mode->setResettable(false);
  EXPECT_FALSE(prop(object, "SelectionHighlightMode")->isResetAllowed()) << "Resettable did not reach the flag word";
  mode->setResettable(true);
  mode->setDeepCopy(true);
  EXPECT_FALSE(mode->getDeepCopy()) << "DeepCopy of a library property is dropped";
  // The public face of a triple takes the custom path so that its mode flips.
  EXPECT_TRUE(cls->isCustomSetOn(prop(object, "Selected")));
  EXPECT_FALSE(cls->isCustomSetOn(prop(object, "Selected_I")));
  object->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::propmodel
