// The figure as a theme container: the saved form of its theme and the way
// back, through the function pair and the hidden SerializableTheme.
#include <algorithm>
#include <string>
#include <vector>


#include "ClassesTestSupport.h"
#include "ThemeColorRows.h"
#include "foundation/log/LogCapture.h"
#include "foundation/log/Logger.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/themes/ThemeUtils.h"
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

// A reset object takes its container's theme again; outside any themed
// container, only a caller that asks for it gets the light values.
TEST_F(ClassesTest, AResetObjectTakesItsContainersThemeAgain) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  set(figure, "Theme", Arr(vxCreateString("dark")).get());
  const std::string dark = row(line, "Color");
  Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(red.get())[0] = 1;
  set(line, "Color", red.get());
  SGHandle::Reset(line);
  EXPECT_EQ(row(line, "Color"), dark);
  EXPECT_EQ(text(line, "ColorMode"), "auto");

  // Detached, no container: nothing unless light is asked for.
  COSInterfacePtr lone = create(sgclasses::kLineClass, COSInterfacePtr());
  Arr blue(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(blue.get())[2] = 1;
  set(lone, "Color_I", blue.get());
  sgutils::themes::restoreThemeOnReset(lone, false);
  EXPECT_EQ(row(lone, "Color"), "0.000000 0.000000 1.000000");
  sgutils::themes::restoreThemeOnReset(lone, true);
  EXPECT_EQ(row(lone, "Color"), serviceRow("--cv-graphics-colorNeutral-line-secondary", "light"));
  lone->deleteObject(COSGetPublicClient());
}

// The application writes its lines on "theme::property" and
// "theme::visitor" when they are on, and only then.
TEST_F(ClassesTest, ThemeApplicationLogsItsSkipsAndSets) {
  COSInterfacePtr figure = create(sgclasses::kFigureClass, root());
  COSInterfacePtr axes = create(sgclasses::kAxesClass, figure);
  COSInterfacePtr line = create(sgclasses::kLineClass, axes);
  Arr red(vxCreateDoubleMatrix(1, 3, vxREAL));
  vxGetPr(red.get())[0] = 1;
  set(line, "Color", red.get());
  const std::uint32_t before = foundation::log::channelLevel("theme::property");
  foundation::log::LogCapture capture;
  set(figure, "Theme", Arr(vxCreateString("dark")).get());
  EXPECT_TRUE(capture.records().empty());
  foundation::log::setChannelLevel("theme::property", foundation::log::kAll);
  foundation::log::setChannelLevel("theme::visitor", foundation::log::kAll);
  set(figure, "Theme", Arr(vxCreateString("light")).get());
  foundation::log::setChannelLevel("theme::property", before);
  foundation::log::setChannelLevel("theme::visitor", before);
  std::vector<std::string> lines;
  for (const auto& r : capture.records()) lines.push_back(r.channel + ": " + r.text);
  auto has = [&](const std::string& line) { return std::find(lines.begin(), lines.end(), line) != lines.end(); };
  EXPECT_TRUE(has("theme::visitor: TVI from node: vantel.ui.Figure"));
  EXPECT_TRUE(has("theme::property: sgutils::themes::setPVPair - Color is in Manual mode, skip."));
  EXPECT_TRUE(has("theme::property: sgutils::themes::setPVPair - using  Color_I property."));
  EXPECT_TRUE(has("theme::property: sgutils::themes::setPVPair - success settting XColor."));
}

}  // namespace
}  // namespace sgtest::classes
