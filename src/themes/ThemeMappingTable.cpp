#include "sgutils/themes/ThemeMappingTable.h"

#include <initializer_list>
#include <utility>

namespace sgutils::themes {
namespace {

using Row = std::pair<const char*, const char*>;
using Table = std::map<std::string, ThemeMap, std::less<>>;

// Semantic variables and named attributes that the rows use.
constexpr const char* kColorPrimary = "--cv-color-primary";
constexpr const char* kLineSecondary = "--cv-graphics-colorNeutral-line-secondary";
constexpr const char* kBackgroundInput = "--cv-backgroundColor-input";
constexpr const char* kBackgroundPrimary = "--cv-backgroundColor-primary";
constexpr const char* kAxesBorderPrimary = "--cv-graphics-borderColor-axes-primary";
constexpr const char* kAxesBorderQuaternary = "--cv-graphics-borderColor-axes-quaternary";
constexpr const char* kAxesBackground = "--cv-graphics-backgroundColor-axes-primary";
constexpr const char* kBorderPrimary = "--cv-borderColor-primary";
constexpr const char* kHyperlink = "--cv-color-hyperlink";
constexpr const char* kHyperlinkVisited = "--cv-color-hyperlink-visited";
constexpr const char* kGridAlpha = "AxesGridAlpha";
constexpr const char* kMinorGridAlpha = "AxesMinorGridAlpha";
constexpr const char* kContainerColor = "ContainerColor";
// Stands only in the rows of the two test classes; it resolves to an empty
// value, so applying it is always a skip.
constexpr const char* kBaseFontName = "BaseFontName";
constexpr const char* kContinuousList = "ContinuousColorList";
constexpr const char* kDiscreteList = "DiscreteColorList";

void add(Table& table, const char* className, std::initializer_list<Row> rows) {
  ThemeMap& map = table[className];
  for (const auto& [property, attribute] : rows) map.emplace(property, attribute);
}

Table buildTable() {
  Table t;
  add(t, "sg2utils.ConcreteThemeContainer", {{"FontName", kBaseFontName}});
  add(t, "sg2utils.ConcreteThemeable", {{"FontName", kBaseFontName}});
  add(t, "vantel.graphics.axis.Axes",
      {{"Color", kAxesBackground}, {"GridColor", kAxesBorderQuaternary}, {"GridAlpha", kGridAlpha},
       {"MinorGridColor", kAxesBorderQuaternary}, {"MinorGridAlpha", kMinorGridAlpha},
       {"XColor", kAxesBorderPrimary}, {"YColor", kAxesBorderPrimary}, {"ZColor", kAxesBorderPrimary}});
  add(t, "vantel.graphics.axis.colorspace.MapColorSpace",
      {{"NeutralColor", kLineSecondary}, {"ColorOrder", kDiscreteList}});
  add(t, "vantel.graphics.axis.PolarAxes",
      {{"Color", kAxesBackground}, {"RColor", kAxesBorderPrimary}, {"ThetaColor", kAxesBorderPrimary},
       {"GridColor", kAxesBorderQuaternary}, {"GridAlpha", kGridAlpha},
       {"MinorGridColor", kAxesBorderQuaternary}, {"MinorGridAlpha", kMinorGridAlpha}});
  add(t, "vantel.graphics.chart.BubbleCloud",
      {{"EdgeColor", kLineSecondary}, {"FontColor", kColorPrimary}, {"ColorOrder", kDiscreteList}});
  add(t, "vantel.graphics.chart.decoration.ConstantLine", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.chart.primitive.Area", {{"EdgeColor", kLineSecondary}});
  add(t, "vantel.graphics.chart.primitive.Bar", {{"EdgeColor", kLineSecondary}});
  add(t, "vantel.graphics.chart.primitive.BoxChart", {{"WhiskerLineColor", kLineSecondary}});
  add(t, "vantel.graphics.chart.primitive.Histogram", {{"EdgeColor", kLineSecondary}});
  add(t, "vantel.graphics.chart.primitive.Histogram2", {{"EdgeColor", kLineSecondary}});
  add(t, "vantel.graphics.illustration.BubbleLegend",
      {{"Color", kAxesBackground}, {"EdgeColor", kAxesBorderPrimary}, {"TextColor", kColorPrimary}});
  add(t, "vantel.graphics.illustration.ColorBar", {{"Color", kAxesBorderPrimary}});
  add(t, "vantel.graphics.illustration.Legend",
      {{"Color", kAxesBackground}, {"EdgeColor", kAxesBorderPrimary}, {"TextColor", kColorPrimary}});
  add(t, "vantel.graphics.primitive.canvas.HTMLCanvas", {{"Colormap", kContinuousList}});
  add(t, "vantel.graphics.primitive.canvas.JavaCanvas", {{"Colormap", kContinuousList}});
  add(t, "vantel.graphics.primitive.Line", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.primitive.Patch",
      {{"FaceColor", kLineSecondary}, {"EdgeColor", kLineSecondary}, {"FaceVertexCData", kLineSecondary}});
  add(t, "vantel.graphics.primitive.Rectangle", {{"EdgeColor", kLineSecondary}});
  add(t, "vantel.graphics.primitive.Text", {{"Color", kColorPrimary}});
  add(t, "vantel.graphics.shape.Arrow", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.DoubleEndArrow", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.Ellipse", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.Line", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.Rectangle", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.TextArrow", {{"Color", kLineSecondary}});
  add(t, "vantel.graphics.shape.TextBox", {{"Color", kColorPrimary}, {"EdgeColor", kLineSecondary}});
  add(t, "vantel.ui.Figure", {{"Color", kBackgroundPrimary}});
  add(t, "vantel.ui.container.ButtonGroup",
      {{"BackgroundColor", kBackgroundPrimary}, {"ForegroundColor", kColorPrimary}});
  add(t, "vantel.ui.container.CheckBoxTree", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.container.GridLayout", {{"BackgroundColor", kBackgroundPrimary}});
  add(t, "vantel.ui.container.Menu", {{"ForegroundColor", kColorPrimary}});
  add(t, "vantel.ui.container.Panel",
      {{"BackgroundColor", kBackgroundPrimary}, {"ForegroundColor", kColorPrimary},
       {"HighlightColor", kBorderPrimary}});
  add(t, "vantel.ui.container.Tab", {{"BackgroundColor", kBackgroundPrimary}, {"ForegroundColor", kColorPrimary}});
  add(t, "vantel.ui.container.Tree", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.container.internal.AccordionPanel",
      {{"BackgroundColor", kBackgroundPrimary}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.container.internal.UIContainer", {{"BackgroundColor", kContainerColor}});
  add(t, "vantel.ui.container.internal.UIFlowContainer", {{"BackgroundColor", kContainerColor}});
  add(t, "vantel.ui.container.internal.UIGridContainer", {{"BackgroundColor", kContainerColor}});
  add(t, "vantel.ui.control.Button", {{"BackgroundColor", kBackgroundPrimary}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.CheckBox", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.DatePicker", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.EditField", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.Gauge", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.Hyperlink", {{"FontColor", kHyperlink}, {"VisitedColor", kHyperlinkVisited}});
  add(t, "vantel.ui.control.Label", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.LinearGauge", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.ListBox", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.NinetyDegreeGauge",
      {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.NumericEditField",
      {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.RadioButton", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.RangeSlider", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.RockerSwitch", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.SemicircularGauge",
      {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.Slider", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.Spinner", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.StateButton", {{"BackgroundColor", kBackgroundPrimary}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.Switch", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.TextArea", {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.ToggleButton", {{"BackgroundColor", kBackgroundPrimary}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.ToggleSwitch", {{"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.UIAxes",
      {{"Color", kAxesBackground}, {"GridColor", kAxesBorderQuaternary}, {"GridAlpha", kGridAlpha},
       {"MinorGridColor", kAxesBorderQuaternary}, {"MinorGridAlpha", kMinorGridAlpha},
       {"XColor", kAxesBorderPrimary}, {"YColor", kAxesBorderPrimary}, {"ZColor", kAxesBorderPrimary}});
  add(t, "vantel.ui.control.ColorPicker", {{"BackgroundColor", kBackgroundPrimary}});
  add(t, "vantel.ui.control.internal.PasswordField",
      {{"BackgroundColor", kBackgroundInput}, {"FontColor", kColorPrimary}});
  add(t, "vantel.ui.control.internal.ScrollbarSlider", {{"BackgroundColor", kBackgroundPrimary}});
  add(t, "vantel.ui.control.internal.model.WorkspaceDropDown",
      {{"BackgroundColor", kBackgroundPrimary}, {"FontColor", kColorPrimary}});
  return t;
}

}  // namespace

const std::map<std::string, ThemeMap, std::less<>>& builtinThemeTable() {
  // Built on first use and read-only afterwards, so readers take no lock.
  static const Table table = buildTable();
  return table;
}

const ThemeMap* findBuiltinThemeMap(std::string_view className) {
  const auto& table = builtinThemeTable();
  auto it = table.find(className);
  return it == table.end() ? nullptr : &it->second;
}

ThemeMap builtinThemeMap(std::string_view className) {
  const ThemeMap* row = findBuiltinThemeMap(className);
  return row ? *row : ThemeMap{};
}

}  // namespace sgutils::themes
