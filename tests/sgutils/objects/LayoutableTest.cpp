// Layoutable on a generated test class: the Layout value and its check, the
// observers it tells, what a new parent does to it, and the position
// strategy; and the tiled chart options it holds.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MixinTestSupport.h"
#include "sgutils/objects/ConcreteLayoutable.gen.h"
#include "sgutils/objects/Layout.gen.h"
#include "sgutils/objects/MockLayoutObserver.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"

namespace sgtest {
namespace {

// One call of handleChildLayoutPropChanged: who heard, of whom, and the old layout.
struct LayoutCall {
  COSInterface* observer;
  COSInterface* child;
  COSInterface* oldLayout;
};
std::vector<LayoutCall>& layoutCalls() {
  static std::vector<LayoutCall> calls;
  return calls;
}

COSInterface* element(const COSValue& value) {
  const auto* array = value.asPointer<const vxArray>();
  return array && omIsVCOS(array) && vxGetNumberOfElements(array) == 1 ? omGetArrayElement(array, 0).get() : nullptr;
}

void handleChildLayoutPropChanged(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  ASSERT_EQ(nrhs, 3);
  layoutCalls().push_back({element(prhs[0]), element(prhs[1]), element(prhs[2])});
}

}  // namespace

void MockLayoutObserver::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "handleChildLayoutPropChanged", &handleChildLayoutPropChanged,
                          {"observer", "child", "oldLayout"}, {});
}

namespace mixins {
namespace {

using graphics::mixin::Layoutable;

COSInterfacePtr makeLayoutObject(const char* className) {
  static const bool done = [] {
    registerMixinTestClasses();
    using namespace sgutils::generated;
    registerConcreteLayoutable();
    registerMockLayoutObserver();
    registerLayout();
    return true;
  }();
  (void)done;
  return make(className);
}

Layoutable& layoutable(const COSInterfacePtr& object) {
  return *static_cast<Layoutable*>(static_cast<SGReference*>(object->getInstanceData(Layoutable::classID())));
}

class LayoutableTest : public ::testing::Test {
 protected:
  void SetUp() override {
    layoutCalls().clear();
    object = makeLayoutObject("sg2utils.ConcreteLayoutable");
    options = makeLayoutObject("vantel.graphics.layout.TiledChartLayoutOptions");
  }
  void TearDown() override {
    for (auto& o : made) remove(o);
    remove(object);
    remove(options);
    layoutCalls().clear();
  }
  COSInterfacePtr another(const char* className) { return made.emplace_back(makeLayoutObject(className)); }

  COSInterfacePtr object, options;
  std::vector<COSInterfacePtr> made;
};

TEST_F(LayoutableTest, TiledOptionsStartAtTileOneSpanningOneCellAndCheckTheirValues) {
  EXPECT_EQ(vxGetScalar(get(options, "Tile").get()), 1.0);
  Arr span = get(options, "TileSpan");
  ASSERT_EQ(vxGetNumberOfElements(span.get()), 2u);
  EXPECT_EQ(vxGetPr(span.get())[0], 1.0);
  EXPECT_EQ(vxGetPr(span.get())[1], 1.0);
  EXPECT_EQ(getText(options, "TileMode"), "auto");

  Arr rowColumn(vxCreateDoubleMatrix(1, 2, vxREAL));
  vxGetPr(rowColumn.get())[0] = 2;
  vxGetPr(rowColumn.get())[1] = 3;
  set(options, "Tile", rowColumn.get());
  EXPECT_EQ(getText(options, "TileMode"), "manual");
  Arr tile = get(options, "Tile");
  ASSERT_EQ(vxGetNumberOfElements(tile.get()), 2u);
  EXPECT_EQ(vxGetPr(tile.get())[1], 3.0);

  Arr zero(vxCreateDoubleScalar(0));
  EXPECT_EQ(errorId([&] { set(options, "Tile", zero.get()); }), "VANTEL:datatypes:InvalidTile");
  EXPECT_EQ(errorId([&] { set(options, "TileSpan", zero.get()); }), "VANTEL:datatypes:InvalidTiledGridSize");
  EXPECT_TRUE(options->getClass()->isSubclassOf(COSID("vantel.ui.layout.LayoutOptions")));
}

TEST_F(LayoutableTest, LayoutTakesOptionsOrEmptyAndRefusesOtherObjectsLeavingTheOldValue) {
  EXPECT_TRUE(vxIsEmpty(get(object, "Layout").get()));
  Arr value = obj(options);
  set(object, "Layout", value.get());
  EXPECT_EQ(getObject(object, "Layout").get(), options.get());

  Arr stranger = obj(another("sg2utils.MockLayoutObserver"));
  EXPECT_EQ(errorId([&] { set(object, "Layout", stranger.get()); }), "VANTEL:datatypes:InvalidLayout");
  EXPECT_EQ(getObject(object, "Layout").get(), options.get());

  set(object, "Layout", empty().get());
  EXPECT_TRUE(vxIsEmpty(get(object, "Layout").get()));
}

TEST_F(LayoutableTest, ObserversHearEachChangeInOrderWithTheOldLayout) {
  COSInterfacePtr first = another("sg2utils.MockLayoutObserver");
  COSInterfacePtr second = another("sg2utils.MockLayoutObserver");
  Layoutable& block = layoutable(object);
  // The same observer twice is told twice.
  block.addLayoutPropertyValueChangeObserver(first);
  block.addLayoutPropertyValueChangeObserver(second);
  block.addLayoutPropertyValueChangeObserver(first);

  Arr value = obj(options);
  set(object, "Layout", value.get());
  ASSERT_EQ(layoutCalls().size(), 3u);
  EXPECT_EQ(layoutCalls()[0].observer, first.get());
  EXPECT_EQ(layoutCalls()[1].observer, second.get());
  EXPECT_EQ(layoutCalls()[2].observer, first.get());
  EXPECT_EQ(layoutCalls()[0].child, object.get());
  EXPECT_EQ(layoutCalls()[0].oldLayout, nullptr);

  // Removing once leaves the second entry; the old layout is handed on.
  block.removeLayoutPropertyValueChangeObserver(first);
  EXPECT_EQ(block.observerCount(), 2u);
  layoutCalls().clear();
  block.resetLayout(object.get());
  ASSERT_EQ(layoutCalls().size(), 2u);
  EXPECT_EQ(layoutCalls()[0].observer, second.get());
  EXPECT_EQ(layoutCalls()[1].observer, first.get());
  EXPECT_EQ(layoutCalls()[1].oldLayout, options.get());

  // A deleted observer is passed over and stays; an unknown one changes nothing.
  remove(second);
  block.removeLayoutPropertyValueChangeObserver(another("sg2utils.MockLayoutObserver"));
  block.removeLayoutPropertyValueChangeObserver(second);
  EXPECT_EQ(block.observerCount(), 2u);
  layoutCalls().clear();
  set(object, "Layout", value.get());
  ASSERT_EQ(layoutCalls().size(), 1u);
  EXPECT_EQ(layoutCalls()[0].observer, first.get());

  // The container's own store tells nobody.
  layoutCalls().clear();
  Arr none = empty();
  block.setLayoutFromLayoutContainer(none.get());
  EXPECT_TRUE(layoutCalls().empty());
  EXPECT_TRUE(block.getLayout().isEmpty());
}

// The restricted methods as their callers reach them: an observer adds
// itself, the layoutable side checks a parent and asks whether a manual
// position is allowed.
TEST_F(LayoutableTest, TheMethodsReachTheObserversAndTheParentCheckThroughTheClassSystem) {
  COSInterfacePtr observer = another("sg2utils.MockLayoutObserver");
  Arr self = obj(object), watcher = obj(observer);
  const vxArray* inputs[] = {self.get(), watcher.get()};
  vxArray* outputs[1] = {nullptr};
  ASSERT_TRUE(omCallMethod(object->getClass()->getID(), "addLayoutPropertyValueChangeObserver",
                           MockLayoutObserver::getPrivateClient(), 0, outputs, 2, inputs, true));
  Arr value = obj(options);
  set(object, "Layout", value.get());
  EXPECT_EQ(layoutCalls().size(), 1u);

  COSInterfacePtr container = another("vantel.graphics.layout.Layout");
  Arr parent = obj(container);
  const vxArray* parentInputs[] = {self.get(), parent.get()};
  const COSClient* own = ConcreteLayoutable::getPrivateClient();
  ASSERT_TRUE(omCallMethod(object->getClass()->getID(), "layoutableValidateParentAndState", own, 0, outputs, 2,
                           parentInputs, true));
  ASSERT_TRUE(omCallMethod(object->getClass()->getID(), "allowManualPositionSet", own, 1, outputs, 1, inputs, true));
  Arr allowed(outputs[0]);
  EXPECT_EQ(vxGetScalar(allowed.get()), 0.0);
}

// Each restricted method admits its own access list and the Layoutable
// classes, and refuses everyone else, the language's public client
// included; the public methods admit all.
TEST_F(LayoutableTest, RestrictedMethodsAdmitTheirListAndTheLayoutableClassesOnly) {
  COSInterfacePtr observer = another("sg2utils.MockLayoutObserver");
  Arr self = obj(object), watcher = obj(observer), none = empty();
  auto refusal = [&](const char* method, const COSClient* client) {
    const std::string_view name(method);
    // The object, then an observer, or an empty parent or layout.
    const vxArray* inputs[] = {self.get(), name.find("Observer") != name.npos ? watcher.get() : none.get()};
    const int nrhs = name.find("Observer") != name.npos || name == "setLayoutFromLayoutContainer" ||
                             name == "layoutableValidateParentAndState"
                         ? 2
                         : 1;
    const int nlhs = name == "allowManualPositionSet" || name == "isInGridLayout" ? 1 : 0;
    vxArray* outputs[1] = {nullptr};
    const std::string id = errorId([&] {
      omCallMethod(object->getClass()->getID(), method, client, nlhs, outputs, nrhs, inputs, true);
    });
    if (outputs[0]) vxDestroyArray(outputs[0]);
    return id;
  };
  const std::string denied = "VANTEL:vcos:MethodAccessDenied";
  const COSClient* publicClient = COSGetPublicClient();
  const COSClient* mock = MockLayoutObserver::getPrivateClient();
  const COSClient* own = ConcreteLayoutable::getPrivateClient();
  // A layout container of the graphics kind is no class of any list.
  const COSClient* container = graphics::layout::Layout::getPrivateClient();
  for (const char* method : {"addLayoutPropertyValueChangeObserver", "removeLayoutPropertyValueChangeObserver",
                             "setLayoutFromLayoutContainer"}) {
    EXPECT_EQ(refusal(method, publicClient), denied) << method;
    EXPECT_EQ(refusal(method, container), denied) << method;
    EXPECT_EQ(refusal(method, mock), "") << method;
    EXPECT_EQ(refusal(method, own), "") << method;
  }
  // The observer's lists do not open the positioning and parenting methods.
  for (const char* method : {"allowManualPositionSet", "layoutableValidateParentAndState"}) {
    EXPECT_EQ(refusal(method, publicClient), denied) << method;
    EXPECT_EQ(refusal(method, mock), denied) << method;
    EXPECT_EQ(refusal(method, own), "") << method;
  }
  for (const char* method : {"isInGridLayout", "resetLayout", "markLayoutPropertyDirty"})
    EXPECT_EQ(refusal(method, publicClient), "") << method;
}

TEST_F(LayoutableTest, ANewParentKeepsTheLayoutUnderALayoutKindAndClearsItElsewhere) {
  Layoutable& block = layoutable(object);
  Arr value = obj(options);
  set(object, "Layout", value.get());
  EXPECT_TRUE(block.allowManualPositionSet());

  block.layoutableValidateParentAndState(another("vantel.graphics.layout.Layout").get());
  EXPECT_FALSE(block.allowManualPositionSet());
  EXPECT_EQ(getObject(object, "Layout").get(), options.get());
  EXPECT_EQ(block.strategy(), nullptr);

  // A plain parent: out of the layout, with a default strategy, telling no observer.
  block.addLayoutPropertyValueChangeObserver(another("sg2utils.MockLayoutObserver"));
  block.layoutableValidateParentAndState(another("sg2utils.ConcreteLayoutable").get());
  EXPECT_TRUE(block.allowManualPositionSet());
  EXPECT_TRUE(vxIsEmpty(get(object, "Layout").get()));
  EXPECT_NE(block.strategy(), nullptr);
  EXPECT_TRUE(layoutCalls().empty());

  block.layoutableValidateParentAndState(another("vantel.graphics.layout.Layout").get());
  block.layoutableValidateParentAndState(nullptr);
  EXPECT_TRUE(block.allowManualPositionSet());
}

TEST_F(LayoutableTest, TheDefaultStrategyReportsThePositionUnchangedAndIsMadeOnFirstUse) {
  Layoutable& block = layoutable(object);
  ASSERT_EQ(block.strategy(), nullptr);
  const graphics::datatype::Position where{10, 20, 300, 400};
  const auto reported = block.getRelativePosition(object.get(), where, std::nullopt, {});
  EXPECT_NE(block.strategy(), nullptr);
  EXPECT_EQ(reported, where);
}

// A strategy that writes down the units and target it is asked with.
struct RecordingStrategy : sgutils::PositionReportStrategy {
  mutable std::vector<std::optional<graphics::datatype::Units>> units;
  mutable std::vector<COSInterfacePtr> targets;
  graphics::datatype::Position getRelativePosition(const COSInterfacePtr& target,
                                                   const graphics::datatype::Position& position,
                                                   std::optional<graphics::datatype::Units> u) const override {
    units.push_back(u);
    targets.push_back(target);
    return graphics::datatype::Position(position.left() + 1, position.bottom(), position.width(), position.height());
  }
};

TEST_F(LayoutableTest, GetRelativePositionHandsTheStrategyCheckedUnits) {
  auto strategy = std::make_unique<RecordingStrategy>();
  const RecordingStrategy& seen = *strategy;
  layoutable(object).setStrategy(std::move(strategy));
  Arr self = obj(object), position(vxCreateDoubleMatrix(1, 4, vxREAL)), target = obj(options);
  std::fill_n(vxGetPr(position.get()), 4, 0.5);
  Arr none = empty();
  auto call = [&](const vxArray* units, const vxArray* to) {
    const vxArray* inputs[] = {self.get(), position.get(), units, to ? to : none.get()};
    vxArray* outputs[1] = {nullptr};
    omCallMethod(object->getClass()->getID(), "getRelativePosition", COSGetPublicClient(), 1, outputs, 4, inputs,
                 false);
    Arr result(outputs[0]);
    return vxGetPr(result.get())[0];
  };
  Arr normalized = text("normalized"), pixels = text("pixels"), bad = text("furlongs");
  EXPECT_EQ(call(normalized.get(), target.get()), 1.5);
  call(pixels.get(), nullptr);
  call(none.get(), nullptr);
  EXPECT_EQ(errorId([&] { call(bad.get(), nullptr); }), "VANTEL:datatypes:InvalidEnumerationValue");
  ASSERT_EQ(seen.units.size(), 3u);  // the bad name never reached it
  EXPECT_EQ(seen.units[0], graphics::datatype::Units::Normalized);
  EXPECT_EQ(seen.targets[0].get(), options.get());
  EXPECT_EQ(seen.units[1], graphics::datatype::Units::Pixels);
  EXPECT_EQ(seen.targets[1].get(), nullptr);
  EXPECT_EQ(seen.units[2], std::nullopt);
}

}  // namespace
}  // namespace mixins
}  // namespace sgtest
