// The figure as a theme container: the saved form of its theme and the way
// back, through the function pair and the hidden SerializableTheme.
#include <string>

#include "ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/objects/GraphicsTheme.gen.h"
#include "sgutils/objects/ThemeContainer.gen.h"
#include "vcos/ObjectArray.h"

namespace sgtest::classes {
namespace {

using graphics::mixin::ThemeContainer;
using graphics::theme::GraphicsTheme;
using sgclasses::create;
using sgclasses::root;

std::string field(const vxArray* s, const char* name) {
  const vxArray* f = vxGetField(s, 0, name);
  return f ? vxArrayToStdString(f) : std::string("<none>");
}

Arr savedForm(std::initializer_list<std::pair<const char*, const char*>> fields) {
  Arr s(vxCreateStructMatrix(1, 1, 0, nullptr));
  for (const auto& [name, value] : fields) vxSetFieldByNumber(s.get(), 0, vxAddField(s.get(), name), vxCreateString(value));
  return s;
}

bool isDark(const ThemeContainer& c) {
  const GraphicsTheme* t = c.getThemeCOSI() ? GraphicsTheme::fromObject(c.getThemeCOSI()) : nullptr;
  return t && const_cast<GraphicsTheme*>(t)->getBaseColorStyle().isDark();
}

TEST_F(ClassesTest, TheSavedThemeHoldsModeAndStyleOnlyAndComesBackAsABuiltinTheme) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  ThemeContainer* container = ThemeContainer::fromObject(figure.get());
  ASSERT_NE(container, nullptr);
  // No theme: the mode alone.
  Arr none = container->serializableTheme();
  EXPECT_EQ(field(none.get(), "ThemeMode"), "auto");
  EXPECT_EQ(field(none.get(), "LightOrDark"), "<none>");

  // A hand-made dark theme is saved as its style; the mode is manual.
  Arr dark(GraphicsTheme::builtinThemeFactory(true));
  set(figure, "Theme", dark.get());
  Arr saved = get(figure, "SerializableTheme");
  EXPECT_EQ(vxGetNumberOfFields(saved.get()), 2);
  EXPECT_EQ(field(saved.get(), "ThemeMode"), "manual");
  EXPECT_EQ(field(saved.get(), "LightOrDark"), "dark");

  // Back into a new figure: a new built-in theme of that style, mode manual.
  COSInterfacePtr other = create(sgclasses::kFigureClass, root());
  ThemeContainer* restored = ThemeContainer::fromObject(other.get());
  set(other, "SerializableTheme", saved.get());
  EXPECT_TRUE(isDark(*restored));
  EXPECT_NE(restored->getThemeCOSI().get(), container->getThemeCOSI().get());
  EXPECT_EQ(text(other, "ThemeMode"), "manual");

  // "auto", a manual form without a style, and a value of another kind leave
  // the container to the preferences.
  COSInterfacePtr third = create(sgclasses::kFigureClass, root());
  ThemeContainer* untouched = ThemeContainer::fromObject(third.get());
  Arr autoDark = savedForm({{"ThemeMode", "auto"}, {"LightOrDark", "dark"}});
  untouched->restoreSerializableTheme(autoDark.get());
  Arr manualOnly = savedForm({{"ThemeMode", "manual"}});
  untouched->restoreSerializableTheme(manualOnly.get());
  Arr number(vxCreateDoubleScalar(1));
  untouched->restoreSerializableTheme(number.get());
  untouched->restoreSerializableTheme(nullptr);
  EXPECT_EQ(untouched->getThemeCOSI(), nullptr);
  EXPECT_EQ(text(third, "ThemeMode"), "auto");

  // A manual form with a style other than "dark" is light.
  Arr odd = savedForm({{"ThemeMode", "manual"}, {"LightOrDark", "Dark"}});
  untouched->restoreSerializableTheme(odd.get());
  ASSERT_NE(untouched->getThemeCOSI(), nullptr);
  EXPECT_FALSE(isDark(*untouched));
}

}  // namespace
}  // namespace sgtest::classes
