// Focusable and Pickable on a generated test class: the focus questions
// answer nothing by default, and the pickable properties keep their modes
// as the visible and internal faces are written.
#include <gtest/gtest.h>

#include "MixinTestSupport.h"
#include "sgutils/objects/ConcreteFocusable.gen.h"
#include "vcos/COSClass.h"

namespace sgtest::mixins {
namespace {

COSInterfacePtr makeFocusable() {
  static const bool done = [] {
    registerMixinTestClasses();
    sgutils::generated::registerConcreteFocusable();
    return true;
  }();
  (void)done;
  return make("sg2utils.ConcreteFocusable");
}

Arr callMethod(const COSInterfacePtr& object, const char* name) {
  Arr self = obj(object);
  const vxArray* inputs[] = {self.get()};
  vxArray* outputs[1] = {nullptr};
  EXPECT_TRUE(omCallMethod(object->getClass()->getID(), name, COSGetPublicClient(), 1, outputs, 1, inputs, true));
  return Arr(outputs[0]);
}

TEST(FocusableAndPickable, TheFocusQuestionsAnswerNothingByDefault) {
  COSInterfacePtr object = makeFocusable();
  auto* block = static_cast<graphics::mixin::Focusable*>(
      static_cast<SGReference*>(object->getInstanceData(graphics::mixin::Focusable::classID())));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block->getFocusableChildren(object.get()), nullptr);
  EXPECT_EQ(block->getFocusableParent(object.get()), nullptr);
  for (const char* name : {"getFocusableChildren", "getFocusableParent"}) {
    Arr answer = callMethod(object, name);
    ASSERT_TRUE(answer) << name;
    EXPECT_TRUE(vxIsEmpty(answer.get())) << name;
  }
  remove(object);
}

TEST(FocusableAndPickable, TheVisibleFaceMakesTheModeManualAndTheInternalOneDoesNot) {
  COSInterfacePtr object = makeFocusable();
  EXPECT_TRUE(object->getClass()->isSubclassOf(COSID("vantel.graphics.mixin.Pickable")));
  EXPECT_EQ(getText(object, "HitTest"), "on");
  EXPECT_EQ(getText(object, "PickableParts"), "visible");
  set(object, "HitTest_I", text("off").get());
  EXPECT_EQ(getText(object, "HitTest"), "off");
  EXPECT_EQ(getText(object, "HitTestMode"), "auto");
  set(object, "HitTest", text("on").get());
  EXPECT_EQ(getText(object, "HitTestMode"), "manual");
  set(object, "PickableParts", text("all").get());
  EXPECT_EQ(getText(object, "PickableParts"), "all");
  EXPECT_EQ(getText(object, "PickablePartsMode"), "manual");
  remove(object);
}

}  // namespace
}  // namespace sgtest::mixins
