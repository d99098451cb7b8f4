// CustomThemeable: an object that keeps the whole theme. Theme application
// hands it the theme before any property; the same theme again changes
// nothing; the language reads it through getTheme.
#include <gtest/gtest.h>

#include "../objects/MixinTestSupport.h"
#include "sgutils/objects/ConcreteCustomThemeable.gen.h"
#include "sgutils/objects/CustomThemeable.gen.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"

namespace sgtest::mixins {
namespace {

using graphics::mixin::CustomThemeable;
using graphics::theme::GraphicsTheme;

COSInterfacePtr makeCustomThemeable() {
  static const bool done = [] {
    registerMixinTestClasses();
    sgutils::generated::registerConcreteCustomThemeable();
    return true;
  }();
  (void)done;
  return make("sg2utils.ConcreteCustomThemeable");
}

bool isDark(const vxArray* theme) {
  COSInterfacePtr element = omGetArrayElement(theme, 0);
  GraphicsTheme* t = element ? GraphicsTheme::fromObject(element) : nullptr;
  return t && t->getBaseColorStyle().isDark();
}

TEST(CustomThemeableTest, TakesTheWholeThemeFromApplicationAndStartsLight) {
  COSInterfacePtr object = makeCustomThemeable();
  CustomThemeable* block = CustomThemeable::fromObject(object.get());
  ASSERT_NE(block, nullptr);
  matrix::unique_vxArray first = block->getTheme();
  ASSERT_EQ(vxGetNumberOfElements(first.get()), 1u);
  EXPECT_FALSE(isDark(first.get()));

  matrix::unique_vxArray dark(GraphicsTheme::builtinThemeFactory(true));
  const COSInterfacePtr darkTheme = omGetArrayElement(dark.get(), 0);
  EXPECT_TRUE(sgutils::themes::applyThemeValues(object, sgutils::themes::ThemeInfo(darkTheme), false));
  matrix::unique_vxArray held = block->getTheme();
  EXPECT_EQ(omGetArrayElement(held.get(), 0).get(), darkTheme.get());

  // The same theme again keeps the array held; the language sees it too.
  block->updateTheme(darkTheme);
  matrix::unique_vxArray again = block->getTheme();
  EXPECT_EQ(omGetArrayElement(again.get(), 0).get(), darkTheme.get());
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  const vxArray* inputs[] = {self.get()};
  vxArray* out[1] = {nullptr};
  ASSERT_TRUE(omCallMethod("sg2utils.ConcreteCustomThemeable", "getTheme", COSGetPublicClient(), 1, out, 1, inputs,
                           true));
  matrix::unique_vxArray viaMethod(out[0]);
  EXPECT_TRUE(isDark(viaMethod.get()));

  object->deleteObject(COSGetPublicClient());
}

}  // namespace
}  // namespace sgtest::mixins
