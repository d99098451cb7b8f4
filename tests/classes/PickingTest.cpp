// Where a reported hit lands, what its listeners receive, and which line of
// an axes lies under a point.
#include <cmath>
#include <initializer_list>
#include <vector>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Picking.h"
#include "sgutils/interaction/HitEventData.h"
#include "support/ErrorId.h"
#include "vcos/BuiltinClasses.h"
#include "vcos/COSClass.h"
#include "vcos/COSEventData.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"

namespace sgtest::classes {
namespace {

using graphics::eventdata::HitEventData;
using graphics::eventdata::HitImpl;

// Records every "Hit" an object sends, with its data.
struct HitLog {
  struct Entry {
    COSInterface* source;
    HitImpl hit;
  };
  std::vector<Entry> entries;
  COSInterfacePtr listener;

  void attach(const COSInterfacePtr& object) {
    listener = COSListener::createListener(COSListenerOp::fromFunction([this](COSInterface* source, COSEventData* data) {
      auto* hit = dynamic_cast<HitEventData*>(data);
      entries.push_back({source, hit ? hit->hit() : HitImpl{-1, {}, {}}});
    }));
    object->addListener(COSID("Hit"), COSListener::toListener(listener));
  }
};

struct Scene {
  COSInterfacePtr figure, axes, group, line;
};

Scene makeScene() {
  Scene s;
  s.figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  s.axes = sgclasses::create(sgclasses::kAxesClass, s.figure);
  s.group = sgclasses::create(sgclasses::kGroupClass, s.axes);
  s.line = sgclasses::create(sgclasses::kLineClass, s.group);
  Arr x(vxCreateDoubleMatrix(1, 3, vxREAL)), y(vxCreateDoubleMatrix(1, 3, vxREAL));
  const double xs[] = {0, 5, 10}, ys[] = {0, 10, 0};
  std::copy(xs, xs + 3, vxGetPr(x.get()));
  std::copy(ys, ys + 3, vxGetPr(y.get()));
  set(s.line, "XData", x.get());
  set(s.line, "YData", y.get());
  return s;
}

Arr word(const char* text) { return Arr(vxCreateString(text)); }

TEST_F(ClassesTest, AHitFiresOnceOnTheTargetWithItsDataAndMakesItCurrent) {
  Scene s = makeScene();
  HitLog onLine, onGroup;
  onLine.attach(s.line);
  onGroup.attach(s.group);
  HitImpl hit{3, {1, 2, 0}, {}};
  EXPECT_EQ(sgclasses::reportHit(s.line.get(), hit).get(), s.line.get());
  ASSERT_EQ(onLine.entries.size(), 1u);
  EXPECT_TRUE(onGroup.entries.empty());
  EXPECT_EQ(onLine.entries[0].hit.button, 3);
  EXPECT_EQ(onLine.entries[0].hit.intersectionPoint[1], 2.0);
  EXPECT_EQ(onLine.entries[0].hit.primitive.get(), s.line.get());
  EXPECT_EQ(omGetArrayElement(get(s.figure, "CurrentObject").get(), 0).get(), s.line.get());

  // HitTest off hands the hit to the nearest ancestor that takes it; the
  // primitive stays the line. The internal face leaves the mode auto.
  set(s.line, "HitTest_I", word("off").get());
  EXPECT_EQ(text(s.line, "HitTestMode"), "auto");
  EXPECT_EQ(sgclasses::reportHit(s.line.get(), hit).get(), s.group.get());
  EXPECT_EQ(onGroup.entries.size(), 1u);
  set(s.line, "HitTest", word("off").get());
  EXPECT_EQ(text(s.line, "HitTestMode"), "manual");
  set(s.group, "PickableParts", word("none").get());
  EXPECT_EQ(sgclasses::reportHit(s.line.get(), hit).get(), s.axes.get());
  EXPECT_EQ(onLine.entries.size(), 1u);
  EXPECT_EQ(onGroup.entries.size(), 1u);
  EXPECT_EQ(omGetArrayElement(get(s.figure, "CurrentObject").get(), 0).get(), s.axes.get());

  // Up to the figure and no further.
  for (const COSInterfacePtr& o : {s.axes, s.figure}) set(o, "HitTest", word("off").get());
  EXPECT_FALSE(sgclasses::reportHit(s.line.get(), hit));
}

TEST_F(ClassesTest, DeletedObjectsSendNoHit) {
  Scene s = makeScene();
  HitLog log;
  log.attach(s.line);
  s.line->deleteObject(COSGetPublicClient());
  graphics::eventdata::fireHitEvent(s.line, HitImpl{});
  graphics::eventdata::fireHitEvent(COSInterfacePtr(), HitImpl{});
  EXPECT_FALSE(sgclasses::reportHit(s.line.get(), HitImpl{}));
  EXPECT_TRUE(log.entries.empty());
}

TEST_F(ClassesTest, PickFindsTheTopmostVisibleLineNearThePoint) {
  Scene s = makeScene();
  std::array<double, 3> at{};
  // Limits follow the data: x 0..10, y 0..10; 1% is 0.1 on either axis.
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 2.5, 5.05, at).get(), s.line.get());
  EXPECT_NEAR(at[0], 2.52, 1e-9);
  EXPECT_NEAR(at[1], 5.04, 1e-9);
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 2.5, 5.5, at).get(), s.axes.get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10.05, at).get(), s.line.get());

  // A newer line through the same point lies on top of the group.
  COSInterfacePtr top = sgclasses::create(sgclasses::kLineClass, s.axes);
  set(top, "XData", get(s.line, "XData").get());
  set(top, "YData", get(s.line, "YData").get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10, at).get(), top.get());
  // Invisible: passed over, unless PickableParts is "all".
  set(top, "Visible", word("off").get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10, at).get(), s.line.get());
  set(top, "PickableParts", word("all").get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10, at).get(), top.get());
  set(top, "PickableParts", word("none").get());
  set(s.group, "Visible", word("off").get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10, at).get(), s.axes.get());
  // A line whose data lengths differ draws nothing and takes no hit.
  set(s.group, "Visible", word("on").get());
  set(s.line, "YData", Arr(vxCreateDoubleScalar(10)).get());
  EXPECT_EQ(sgclasses::pickInAxes(s.axes.get(), 5, 10, at).get(), s.axes.get());
}

Arr row(std::initializer_list<double> values) {
  Arr a(vxCreateDoubleMatrix(1, values.size(), vxREAL));
  std::copy(values.begin(), values.end(), vxGetPr(a.get()));
  return a;
}

// On a log axis a segment is drawn straight between the logarithms of its
// ends: picking measures there too, not along the linear segment.
TEST_F(ClassesTest, PickOnALogAxisFollowsTheDrawnShapes) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  set(axes, "XLim", row({0, 10}).get());
  set(axes, "YLim", row({1, 1000}).get());
  set(axes, "YScale", word("log").get());
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
  set(line, "XData", row({0, 10}).get());
  set(line, "YData", row({1, 1000}).get());
  std::array<double, 3> at{};
  // Half way across the line is at 10^1.5, a share of 0.5 up the axis.
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 31.6, at).get(), line.get());
  EXPECT_NEAR(at[0], 5, 0.01);
  EXPECT_NEAR(std::log10(at[1]), std::log10(31.6), 0.005);
  // The linear midpoint lies far above the drawn line.
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 500.5, at).get(), axes.get());
  // 1% of the axis is a factor of 10^0.03 on three decades.
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 31.62 * std::pow(10, 0.025), at).get(), line.get());
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 31.62 * std::pow(10, 0.05), at).get(), axes.get());
  // A value a log axis has no place for hits nothing but the axes.
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 0, -1, at).get(), axes.get());

  // A patch below the line: its slanted edge is the drawn line too.
  set(line, "Visible", word("off").get());
  COSInterfacePtr patch = sgclasses::create(sgclasses::kPatchClass, axes);
  Arr px(vxCreateDoubleMatrix(3, 1, vxREAL)), py(vxCreateDoubleMatrix(3, 1, vxREAL));
  const double xs[] = {0, 10, 10}, ys[] = {1, 1, 1000};
  std::copy(xs, xs + 3, vxGetPr(px.get()));
  std::copy(ys, ys + 3, vxGetPr(py.get()));
  set(patch, "XData", px.get());
  set(patch, "YData", py.get());
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 10, at).get(), patch.get());
  EXPECT_DOUBLE_EQ(at[1], 10);
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 100, at).get(), axes.get());
  // Near the slanted edge from outside: the nearest point on it, in data.
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 5, 31.62 * std::pow(10, 0.02), at).get(), patch.get());
  EXPECT_NEAR(std::log10(at[1]) / 3, at[0] / 10, 1e-9);

  // A text is placed where its anchor is drawn.
  COSInterfacePtr label = sgclasses::create(sgclasses::kTextClass, axes);
  set(label, "String", word("x").get());
  set(label, "Position", row({2, 100, 0}).get());
  set(patch, "Visible", word("off").get());
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 2, 100, at).get(), label.get());
  EXPECT_EQ(sgclasses::pickInAxes(axes.get(), 2, 10, at).get(), axes.get());
}

TEST_F(ClassesTest, AHitArrivesAsAnObjectOfTheHitClassWithItsValues) {
  Scene s = makeScene();
  COSInterfacePtr received;
  COSInterfacePtr listener =
      COSListener::createListener(COSListenerOp::fromFunction([&](COSInterface* source, COSEventData* data) {
        received = vcos::eventDataObject(source, data);
      }));
  s.line->addListener(COSID("Hit"), COSListener::toListener(listener));
  sgclasses::reportHit(s.line.get(), HitImpl{2, {4, 8, 0}, {}});
  ASSERT_TRUE(received);
  EXPECT_STREQ(received->getClass()->getName(), "vantel.graphics.eventdata.Hit");
  EXPECT_EQ(vxGetScalar(get(received, "Button").get()), 2.0);
  EXPECT_EQ(vxGetPr(get(received, "IntersectionPoint").get())[1], 8.0);
  EXPECT_EQ(omGetArrayElement(get(received, "Primitive").get(), 0).get(), s.line.get());
  EXPECT_EQ(omGetArrayElement(get(received, "Source").get(), 0).get(), s.line.get());
  EXPECT_EQ(text(received, "EventName"), "Hit");
  received = {};

  // Only classes of event data take native event data.
  COSInterfacePtr plain(new COSEventData(s.line.get(), COSID("Hit")));
  EXPECT_EQ(sgtest::errorId([&] {
              vcos::bindEventData(static_cast<COSEventData*>(plain.get()), s.line->getClass());
            }),
            "VANTEL:vcos:NotEventDataClass");
}

}  // namespace
}  // namespace sgtest::classes
