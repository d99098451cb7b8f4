// The walk that finds the target of the next plot: each container on the
// way up answers for the object below it, the outermost last. Two test
// containers: TestPlotAxes keeps the default answer (itself as the axes),
// TestPlotFrame overrides the method and names the axes it was given.
#include <gtest/gtest.h>

#include "MixinTestSupport.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/objects/TestPlotAxes.gen.h"
#include "sgutils/objects/TestPlotFrame.gen.h"
#include "support/ErrorId.h"

namespace sgtest {

namespace {

TestPlotFrame* frameOf(const vxArray* self) {
  COSInterfacePtr object = self && omIsVCOS(self) ? omGetLiveArrayElement(self, 0) : nullptr;
  void* slot = object ? object->getInstanceData(TestPlotFrame::classID()) : nullptr;
  return slot ? static_cast<TestPlotFrame*>(static_cast<SGReference*>(slot)) : nullptr;
}

// The frame's answer: the candidate stays, the axes is the chosen one.
void frameAnswer(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  TestPlotFrame* frame = nrhs > 0 ? frameOf(prhs[0].asPointer<const vxArray>()) : nullptr;
  if (frame) ++frame->answers;
  if (nlhs >= 1) plhs[0] = COSValue(vxCreateSharedCopyNotOnArrayList(prhs[1].asPointer<const vxArray>()));
  if (nlhs >= 2)
    plhs[1] = COSValue(frame && frame->chosen ? omCreateVCOSScalar(frame->chosen)
                                              : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
}

}  // namespace

void TestPlotFrame::addOwnMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "processCurrentObjectCandidate", &frameAnswer, {"object", "candidate"},
                          {"object", "axes"});
}

namespace mixins {
namespace {

using graphics::mixin::CurrentAxes;

class CurrentAxesWalk : public ::testing::Test {
 protected:
  void TearDown() override {
    for (auto* o : {&leaf, &axes, &frame, &outer}) remove(*o);
  }
  COSInterfacePtr leaf = make("sg2utils.TestContextMenu");
  COSInterfacePtr axes = make("sg2utils.TestPlotAxes");
  COSInterfacePtr frame = make("sg2utils.TestPlotFrame");
  COSInterfacePtr outer;
};

TEST_F(CurrentAxesWalk, AnObjectWithoutAContainerIsItsOwnObjectWithNoAxes) {
  const auto [object, current] = CurrentAxes::getCurrentObjectAndAxes(leaf);
  EXPECT_EQ(object, leaf);
  EXPECT_EQ(current, nullptr);
}

TEST_F(CurrentAxesWalk, AContainerWithoutItsOwnAnswerBecomesTheAxes) {
  axes->hookChild(leaf.get());
  const auto [object, current] = CurrentAxes::getCurrentObjectAndAxes(leaf);
  EXPECT_EQ(object, leaf);
  EXPECT_EQ(current, axes);
  // Starting at the container counts the container too.
  EXPECT_EQ(CurrentAxes::getCurrentObjectAndAxes(axes).second, axes);
}

TEST_F(CurrentAxesWalk, TheOutermostContainerHasTheLastWord) {
  frame->hookChild(axes.get());
  axes->hookChild(leaf.get());
  // The frame names no axes: the inner answer is overruled.
  EXPECT_EQ(CurrentAxes::getCurrentObjectAndAxes(leaf).second, nullptr);
  COSInterfacePtr other = make("sg2utils.TestPlotAxes");
  frame->hookChild(other.get());
  static_cast<TestPlotFrame*>(static_cast<SGReference*>(frame->getInstanceData(TestPlotFrame::classID())))
      ->choose(other);
  const auto [object, current] = CurrentAxes::getCurrentObjectAndAxes(leaf);
  EXPECT_EQ(object, leaf);
  EXPECT_EQ(current, other);
  remove(other);
}

TEST_F(CurrentAxesWalk, ObjectsBetweenContainersAreSkipped) {
  outer = make("sg2utils.TestContextMenu");
  frame->hookChild(outer.get());
  outer->hookChild(leaf.get());
  CurrentAxes::getCurrentObjectAndAxes(leaf);
  auto* block = static_cast<TestPlotFrame*>(static_cast<SGReference*>(frame->getInstanceData(TestPlotFrame::classID())));
  EXPECT_EQ(block->answers, 1);
}

TEST_F(CurrentAxesWalk, MethodFormGivesEmptiesForAnInputThatIsNotOneObject) {
  axes->hookChild(leaf.get());
  Arr two(omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
  Arr number(vxCreateDoubleScalar(3));
  for (const vxArray* input : {two.get(), number.get()}) {
    vxArray* outputs[2] = {nullptr, nullptr};
    const vxArray* inputs[] = {input};
    EXPECT_EQ(errorId([&] {
                omCallMethod("vantel.graphics.mixin.CurrentAxes", "getCurrentObjectAndAxes", COSGetPublicClient(), 2,
                             outputs, 1, inputs, false);
              }),
              "");
    Arr first(outputs[0]), second(outputs[1]);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(vxIsEmpty(first.get()));
    EXPECT_TRUE(vxIsEmpty(second.get()));
  }
  // A graphics object gives the pair as arrays.
  Arr start = obj(leaf);
  vxArray* outputs[2] = {nullptr, nullptr};
  const vxArray* inputs[] = {start.get()};
  omCallMethod("vantel.graphics.mixin.CurrentAxes", "getCurrentObjectAndAxes", COSGetPublicClient(), 2, outputs, 1,
               inputs, false);
  Arr first(outputs[0]), second(outputs[1]);
  EXPECT_EQ(omGetArrayElement(first.get(), 0), leaf);
  EXPECT_EQ(omGetArrayElement(second.get(), 0), axes);
}

}  // namespace
}  // namespace mixins
}  // namespace sgtest
