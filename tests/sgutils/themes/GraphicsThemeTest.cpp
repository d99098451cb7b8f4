// Theme objects as the class system sees them: the class and its data type,
// the automatic values worked out on read, modes, the colour override and the
// attribute look-ups.
#include <gtest/gtest.h>

#include <vector>

#include "ThemeTestSupport.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgdatatypes/AutoManual.h"
#include "sgutils/colorvalues/ColorValues.h"
#include "support/ErrorId.h"
#include "vcos/FunctionDispatcher.h"

namespace sgtest::themes {
namespace {

using graphics::datatype::AutoManual;
using graphics::datatype::ColorOrder;
using graphics::datatype::RGBAColor;
using sgutils::BaseColorSchemeType;

class ThemeObject : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { VLInitialize_sgutils(); }
};

RGBAColor serviceColor(const char* variable, const char* style) {
  return RGBAColor(*uithemes::utils::getColor(variable, style));
}

TEST_F(ThemeObject, ClassFacesAccessAndStyleType) {
  Theme t(false);
  COSClass* cls = GraphicsTheme::getClassInstance();
  ASSERT_NE(cls, nullptr);
  EXPECT_EQ(t.object->getClass(), cls);
  // Values are set by the class and the theme code, modes by anyone.
  EXPECT_EQ(t.property("BackgroundColor")->getMemberSetAccess(), ProtectedAccess);
  EXPECT_EQ(t.property("BackgroundColor_I")->getMemberSetAccess(), ProtectedAccess);
  EXPECT_EQ(t.property("BackgroundColorMode")->getMemberSetAccess(), PublicAccess);
  EXPECT_EQ(t.property("BaseColorStyle")->getMemberSetAccess(), PublicAccess);
  EXPECT_EQ(t.property("Basemap_InternalStorage")->getMemberGetAccess(), ProtectedAccess);
  EXPECT_EQ(t.property("OverrideColor")->getMemberSetAccess(), PrivateAccess);
  EXPECT_EQ(std::string(t.property("BaseColorStyle")->getDataType()->getID().c_str()),
            BaseColorSchemeType::kTypeName);

  // White is accepted in any case but not offered.
  t.setText("BaseColorStyle", "White");
  EXPECT_TRUE(t.theme().getBaseColorStyle().isWhite());
  EXPECT_EQ(t.text("BaseColorStyle"), "white");
  const auto offered = t.property("BaseColorStyle")->getDataType()->getPossibleValues();
  EXPECT_EQ(offered, (std::vector<std::string>{"light", "dark"}));
  EXPECT_EQ(errorId([&] { t.setText("BaseColorStyle", "blue"); }), "VANTEL:datatypes:InvalidEnumerationValue");
  EXPECT_TRUE(t.theme().getBaseColorStyle().isWhite());
}

TEST_F(ThemeObject, AutomaticValuesFollowTheStyle) {
  Theme light(false), dark(true);
  EXPECT_TRUE(light.theme().getBaseColorStyle().isLight());
  EXPECT_TRUE(dark.theme().getBaseColorStyle().isDark());
  EXPECT_EQ(light.text("Name"), "Light Theme");
  EXPECT_EQ(dark.text("Name"), "Dark Theme");
  const struct {
    const char* property;
    const char* variable;
  } colours[] = {{"ContainerColor", "--cv-backgroundColor-primary"},
                 {"BackgroundColor", "--cv-backgroundColor-input"},
                 {"BaseTextColor", "--cv-color-primary"},
                 {"HyperlinkColor", "--cv-color-hyperlink"},
                 {"HyperlinkVisitedColor", "--cv-color-hyperlink-visited"}};
  for (const auto& c : colours) {
    EXPECT_EQ(RGBAColor::fromArray(light.get(c.property).get()), serviceColor(c.variable, "light")) << c.property;
    EXPECT_EQ(RGBAColor::fromArray(dark.get(c.property).get()), serviceColor(c.variable, "dark")) << c.property;
  }
  EXPECT_EQ(light.theme().getDiscreteColorList(), sgutils::colorvalues::factoryColorOrder(true));
  EXPECT_EQ(dark.theme().getDiscreteColorList(), sgutils::colorvalues::factoryColorOrder(false));
  EXPECT_EQ(dark.theme().getDiscreteColorListExtended(), sgutils::colorvalues::extendedColorOrder(false));
  EXPECT_EQ(dark.theme().getContinuousColorList(), sgutils::colorvalues::factoryColorMap());
  EXPECT_EQ(light.theme().getAxesGridAlpha().value(), 0.15);
  EXPECT_EQ(dark.theme().getAxesGridAlpha().value(), 0.25);
  EXPECT_EQ(dark.theme().getAxesMinorGridAlpha().value(), 0.25);

  // Values are worked out on read: a new style shows at the next read.
  dark.setText("BaseColorStyle", "light");
  EXPECT_EQ(dark.text("Name"), "Light Theme");
  EXPECT_EQ(dark.theme().getContainerColor(), serviceColor("--cv-backgroundColor-primary", "light"));
  EXPECT_EQ(dark.theme().getAxesMinorGridAlpha().value(), 0.15);

  // White resolves as light, with no name.
  light.setText("BaseColorStyle", "white");
  EXPECT_EQ(light.text("Name"), "");
  EXPECT_EQ(light.theme().getBaseTextColor(), serviceColor("--cv-color-primary", "light"));
  EXPECT_EQ(light.theme().getDiscreteColorListExtended(), sgutils::colorvalues::extendedColorOrder(true));
  EXPECT_EQ(light.theme().getAxesGridAlpha().value(), 0.15);
}

TEST_F(ThemeObject, ManualValuesAreKeptAcrossStyleChanges) {
  Theme t(false);
  const RGBAColor red(1, 0, 0);
  // The class writes the value; a user turns the mode manual.
  t.theme().setBackgroundColor(red, graphics::datatype::PrivateClient);
  EXPECT_NE(t.theme().getBackgroundColor(), red) << "an auto value is worked out again on read";
  t.setText("BackgroundColorMode", "manual");
  t.theme().setBackgroundColor(red, graphics::datatype::PrivateClient);
  t.setText("BaseColorStyle", "dark");
  EXPECT_EQ(RGBAColor::fromArray(t.get("BackgroundColor").get()), red);
  EXPECT_EQ(t.theme().getBackgroundColorMode(), AutoManual::Manual);
  t.theme().setNameMode(AutoManual::Manual);
  t.theme().setName(u"Mine", graphics::datatype::PrivateClient);
  EXPECT_EQ(t.text("Name"), "Mine");
  // Back to auto: the theme takes the property over again.
  t.setText("BackgroundColorMode", "auto");
  EXPECT_EQ(t.theme().getBackgroundColor(), serviceColor("--cv-backgroundColor-input", "dark"));
  // The public refuses a value write outside the class.
  EXPECT_FALSE(errorId([&] { t.set("ContainerColor", row(0, 0, 1).get()); }).empty());
}

TEST_F(ThemeObject, OverrideReplacesEveryColourButNotAlphaOrName) {
  Theme t(true);
  const RGBAColor green(0, 0.5, 0);
  t.theme().singleColorThemeOverride(&green);
  for (const char* attribute : {"--cv-color-primary", "--cv-no-such-variable", "Axes"}) {
    RGBAColor out;
    EXPECT_TRUE(t.theme().getThemeAttributeColor(attribute, out)) << attribute;
    EXPECT_EQ(out, green) << attribute;
  }
  EXPECT_EQ(t.theme().getHyperlinkColor(), green);
  ASSERT_EQ(t.theme().getDiscreteColorList().rows(), 1u);
  EXPECT_EQ(t.theme().getDiscreteColorList().at(0), green);
  EXPECT_EQ(t.theme().getDiscreteColorListExtended().rows(), 1u);
  EXPECT_EQ(t.theme().getContinuousColorList().columnMajor(), (std::vector<double>{0, 0.5, 0}));
  EXPECT_EQ(t.theme().getAxesGridAlpha().value(), 0.25);
  EXPECT_EQ(t.text("Name"), "Dark Theme");
  EXPECT_EQ(RGBAColor::fromArray(t.getDirect("OverrideColor").get()), green);
  EXPECT_FALSE(errorId([&] { t.get("OverrideColor"); }).empty()) << "the override is hidden from users";

  // Cleared: back to the theme service and the dark orders.
  t.theme().singleColorThemeOverride(nullptr);
  EXPECT_EQ(t.theme().getOverrideColor(), nullptr);
  EXPECT_EQ(vxGetNumberOfElements(t.getDirect("OverrideColor").get()), 3u) << "none reads as the type's default";
  EXPECT_EQ(t.theme().getHyperlinkColor(), serviceColor("--cv-color-hyperlink", "dark"));
  EXPECT_EQ(t.theme().getDiscreteColorList(), sgutils::colorvalues::factoryColorOrder(false));
  RGBAColor untouched(0.1, 0.2, 0.3);
  EXPECT_FALSE(t.theme().getThemeAttributeColor("--cv-no-such-variable", untouched));
  EXPECT_EQ(untouched, RGBAColor(0.1, 0.2, 0.3));
}

TEST_F(ThemeObject, AttributeValuesOfNamedAttributesAndVariables) {
  Theme t(false);
  t.theme().setBackgroundColorMode(AutoManual::Manual);
  t.theme().setBackgroundColor(RGBAColor(1, 0, 0), graphics::datatype::PrivateClient);
  // A named attribute in any case is the property's public value.
  matrix::unique_vxArray named(t.theme().getThemeAttributeValue("backgroundcolor"));
  EXPECT_EQ(RGBAColor::fromArray(named.get()), RGBAColor(1, 0, 0));
  matrix::unique_vxArray alpha(t.theme().getThemeAttributeValue("AXESGRIDALPHA"));
  EXPECT_EQ(vxGetScalar(alpha.get()), 0.15);
  // A variable is a 1-by-3 row from the service; an unknown one is an empty
  // character array.
  matrix::unique_vxArray variable(t.theme().getThemeAttributeValue("--cv-color-hyperlink"));
  ASSERT_EQ(vxGetNumberOfElements(variable.get()), 3u);
  EXPECT_EQ(vxGetDimensions(variable.get())[0], 1u);
  EXPECT_EQ(RGBAColor::fromArray(variable.get()), serviceColor("--cv-color-hyperlink", "light"));
  matrix::unique_vxArray unknown(t.theme().getThemeAttributeValue("--cv-nothing"));
  ASSERT_NE(unknown.get(), nullptr);
  EXPECT_TRUE(vxIsChar(unknown.get()));
  EXPECT_EQ(vxGetNumberOfElements(unknown.get()), 0u);

  RGBAColor target(0, 0, 1);
  t.theme().setDefaultColorIfAuto(false, target, "--cv-color-primary");
  EXPECT_EQ(target, RGBAColor(0, 0, 1));
  t.theme().setDefaultColorIfAuto(true, target, "--cv-nothing");
  EXPECT_EQ(target, RGBAColor(0, 0, 1));
  t.theme().setDefaultColorIfAuto(true, target, "--cv-color-primary");
  EXPECT_EQ(target, serviceColor("--cv-color-primary", "light"));
}

// The default basemap comes from a function of the language layer, asked on
// each automatic read with "dark" for a dark theme only.
std::vector<int>& basemapCalls() {
  static std::vector<int> inputs;
  return inputs;
}

void fakeDefaultBasemap(int, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  basemapCalls().push_back(nrhs);
  if (nrhs == 1 && vxArrayToStdString(prhs[0]) == "dark") {
    plhs[0] = vxCreateString("darkwater");
    return;
  }
  plhs[0] = vxCreateString("streets-light");
}

TEST_F(ThemeObject, BasemapAsksTheLanguageLayerUntilSet) {
  constexpr const char* kFcn = "vantel.graphics.chart.internal.maps.defaultBasemap";
  vcos::FunctionDispatcher::instance().registerBuiltin(kFcn, &fakeDefaultBasemap);
  basemapCalls().clear();
  {
    Theme t(true);
    EXPECT_EQ(t.text("Basemap"), "darkwater");
    EXPECT_EQ(t.text("Basemap"), "darkwater");
    EXPECT_EQ(basemapCalls(), (std::vector<int>{1, 1}));
    matrix::unique_vxArray viaAttribute(t.theme().getThemeAttributeValue("basemap"));
    EXPECT_EQ(vxArrayToStdString(viaAttribute.get()), "darkwater");
    t.setText("BaseColorStyle", "white");
    EXPECT_EQ(t.text("Basemap"), "streets-light");
    EXPECT_EQ(basemapCalls().back(), 0);

    // A set goes to the storage, whose mode turns manual: no more calls.
    t.setText("Basemap", "satellite");
    EXPECT_EQ(t.text("BasemapMode"), "manual");
    EXPECT_EQ(t.theme().getBasemap_InternalStorageMode(), AutoManual::Manual);
    const std::size_t calls = basemapCalls().size();
    EXPECT_EQ(t.text("Basemap"), "satellite");
    EXPECT_EQ(basemapCalls().size(), calls);
    t.setText("BasemapMode", "auto");
    EXPECT_EQ(t.text("Basemap"), "streets-light");
  }
  vcos::FunctionDispatcher::instance().unregisterBuiltin(kFcn);
  // Without the chart library the call's error passes through.
  Theme t(false);
  EXPECT_FALSE(errorId([&] { t.get("Basemap"); }).empty());
}

TEST_F(ThemeObject, FactoryByName) {
  Theme dark(GraphicsTheme::builtinThemeFactory("Dark"));
  EXPECT_TRUE(dark.theme().getBaseColorStyle().isDark());
  Theme light(GraphicsTheme::builtinThemeFactory("LIGHT"));
  EXPECT_TRUE(light.theme().getBaseColorStyle().isLight());
  EXPECT_EQ(GraphicsTheme::builtinThemeFactory("white"), nullptr);
  EXPECT_EQ(GraphicsTheme::builtinThemeFactory(""), nullptr);
  // Everything is automatic, the style's mode included.
  EXPECT_EQ(dark.theme().getBaseColorStyleMode(), AutoManual::Auto);
}

}  // namespace
}  // namespace sgtest::themes
