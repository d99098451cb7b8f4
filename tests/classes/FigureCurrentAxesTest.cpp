// The figure's CurrentAxes through the CurrentAxes walk: the figure answers
// with the axes it holds as current, and it has the last word for anything
// below it.
#include "ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/objects/CurrentAxes.gen.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::classes {
namespace {

using graphics::mixin::CurrentAxes;

TEST_F(ClassesTest, TheFigureAnswersTheWalkWithItsCurrentAxes) {
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr first = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr second = sgclasses::create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, first);

  // From a line in the first axes the figure names the second, which is current.
  auto [object, axes] = CurrentAxes::getCurrentObjectAndAxes(line);
  EXPECT_EQ(object, line);
  EXPECT_EQ(axes, second);
  EXPECT_EQ(omGetArrayElement(get(figure, "CurrentAxes").get(), 0), second);

  set(figure, "CurrentAxes", obj(first).get());
  EXPECT_EQ(CurrentAxes::getCurrentObjectAndAxes(figure).second, first);
  EXPECT_EQ(sgclasses::currentAxes(false), first);

  // The method form gives the same answer.
  Arr start(omCreateVCOSScalar(line));
  const vxArray* inputs[] = {start.get()};
  vxArray* outputs[2] = {nullptr, nullptr};
  ASSERT_TRUE(omCallMethod(CurrentAxes::classID(), "getCurrentObjectAndAxes", COSGetPublicClient(), 2, outputs, 1,
                           inputs, false));
  Arr out0(outputs[0]), out1(outputs[1]);
  EXPECT_EQ(omGetArrayElement(out1.get(), 0), first);

  // A deleted current axes leaves the figure without one; gca makes a new one.
  first->deleteObject(COSGetPublicClient());
  EXPECT_EQ(CurrentAxes::getCurrentObjectAndAxes(figure).second, nullptr);
  EXPECT_TRUE(vxIsEmpty(get(figure, "CurrentAxes").get()));
  COSInterfacePtr made = sgclasses::currentAxes(true);
  EXPECT_NE(made, second);
  EXPECT_EQ(made->getOwnerObject(), figure.get());
  EXPECT_EQ(CurrentAxes::getCurrentObjectAndAxes(figure).second, made);
}

}  // namespace
}  // namespace sgtest::classes
