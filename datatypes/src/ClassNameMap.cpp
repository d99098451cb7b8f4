// The table of short and full graphics class names. Each class has one short
// name: the lower-case last part of its full name, or, where two classes share
// a last part, a name that tells them apart ("lineshape" for the annotation
// line). Short names that would begin with another short name followed by a
// property name of that class ("axes" + "Toolbar") are left out, because
// they would capture default names meant for the shorter class.
#include "sgdatatypes/ClassNameMap.h"

#include <cassert>
#include <cctype>
#include <utility>

namespace sgdatatypes::typemap {
namespace {

struct Entry {
  const char* shortName;
  const char* fullName;
};

constexpr Entry kClasses[] = {
    // The classes of the object tree.
    {"root", "vantel.ui.Root"},
    {"figure", "vantel.ui.Figure"},
    {"axes", "vantel.graphics.axis.Axes"},
    {"polaraxes", "vantel.graphics.axis.PolarAxes"},
    {"uiaxes", "vantel.ui.control.UIAxes"},
    {"mapcolorspace", "vantel.graphics.axis.colorspace.MapColorSpace"},
    {"contextmenu", "vantel.ui.container.ContextMenu"},
    // Primitives.
    {"line", "vantel.graphics.primitive.Line"},
    {"text", "vantel.graphics.primitive.Text"},
    {"group", "vantel.graphics.primitive.Group"},
    {"image", "vantel.graphics.primitive.Image"},
    {"surface", "vantel.graphics.primitive.Surface"},
    {"patch", "vantel.graphics.primitive.Patch"},
    {"rectangle", "vantel.graphics.primitive.Rectangle"},
    {"polygon", "vantel.graphics.primitive.Polygon"},
    {"light", "vantel.graphics.primitive.Light"},
    {"htmlcanvas", "vantel.graphics.primitive.canvas.HTMLCanvas"},
    {"javacanvas", "vantel.graphics.primitive.canvas.JavaCanvas"},
    // Illustrations and charts.
    {"colorbar", "vantel.graphics.illustration.ColorBar"},
    {"legend", "vantel.graphics.illustration.Legend"},
    {"bubblelegend", "vantel.graphics.illustration.BubbleLegend"},
    {"bubblecloud", "vantel.graphics.chart.BubbleCloud"},
    {"heatmap", "vantel.graphics.chart.HeatmapChart"},
    {"area", "vantel.graphics.chart.primitive.Area"},
    {"bar", "vantel.graphics.chart.primitive.Bar"},
    {"binscatter", "vantel.graphics.chart.primitive.Binscatter"},
    {"boxchart", "vantel.graphics.chart.primitive.BoxChart"},
    {"constantline", "vantel.graphics.chart.decoration.ConstantLine"},
    {"contour", "vantel.graphics.chart.primitive.Contour"},
    {"errorbar", "vantel.graphics.chart.primitive.ErrorBar"},
    {"graphplot", "vantel.graphics.chart.primitive.GraphPlot"},
    {"histogram", "vantel.graphics.chart.primitive.Histogram"},
    {"histogram2", "vantel.graphics.chart.primitive.Histogram2"},
    {"categoricalhistogram", "vantel.graphics.chart.primitive.categorical.Histogram"},
    {"quiver", "vantel.graphics.chart.primitive.Quiver"},
    {"stair", "vantel.graphics.chart.primitive.Stair"},
    {"stem", "vantel.graphics.chart.primitive.Stem"},
    {"animatedline", "vantel.graphics.animation.AnimatedLine"},
    {"functionline", "vantel.graphics.function.FunctionLine"},
    {"functioncontour", "vantel.graphics.function.FunctionContour"},
    {"functionsurface", "vantel.graphics.function.FunctionSurface"},
    {"parameterizedfunctionline", "vantel.graphics.function.ParameterizedFunctionLine"},
    {"parameterizedfunctionsurface", "vantel.graphics.function.ParameterizedFunctionSurface"},
    {"implicitfunctionline", "vantel.graphics.function.ImplicitFunctionLine"},
    {"implicitfunctionsurface", "vantel.graphics.function.ImplicitFunctionSurface"},
    {"datatip", "vantel.graphics.datatip.DataTip"},
    {"layout", "vantel.graphics.layout.Layout"},
    // Annotation shapes; their last parts repeat primitive names.
    {"arrowshape", "vantel.graphics.shape.Arrow"},
    {"doubleendarrowshape", "vantel.graphics.shape.DoubleEndArrow"},
    {"ellipseshape", "vantel.graphics.shape.Ellipse"},
    {"lineshape", "vantel.graphics.shape.Line"},
    {"rectangleshape", "vantel.graphics.shape.Rectangle"},
    {"textarrowshape", "vantel.graphics.shape.TextArrow"},
    {"textboxshape", "vantel.graphics.shape.TextBox"},
    // Containers and controls of the user interface.
    {"buttongroup", "vantel.ui.container.ButtonGroup"},
    {"checkboxtree", "vantel.ui.container.CheckBoxTree"},
    {"gridlayout", "vantel.ui.container.GridLayout"},
    {"menu", "vantel.ui.container.Menu"},
    {"panel", "vantel.ui.container.Panel"},
    {"tab", "vantel.ui.container.Tab"},
    {"tabgroup", "vantel.ui.container.TabGroup"},
    {"toolbar", "vantel.ui.container.Toolbar"},
    {"pushtool", "vantel.ui.container.toolbar.PushTool"},
    {"toggletool", "vantel.ui.container.toolbar.ToggleTool"},
    {"splittool", "vantel.ui.container.toolbar.SplitTool"},
    {"togglesplittool", "vantel.ui.container.toolbar.ToggleSplitTool"},
    {"tree", "vantel.ui.container.Tree"},
    {"accordionpanel", "vantel.ui.container.internal.AccordionPanel"},
    {"uicontainer", "vantel.ui.container.internal.UIContainer"},
    {"uiflowcontainer", "vantel.ui.container.internal.UIFlowContainer"},
    {"uigridcontainer", "vantel.ui.container.internal.UIGridContainer"},
    {"button", "vantel.ui.control.Button"},
    {"checkbox", "vantel.ui.control.CheckBox"},
    {"colorpicker", "vantel.ui.control.ColorPicker"},
    {"datepicker", "vantel.ui.control.DatePicker"},
    {"editfield", "vantel.ui.control.EditField"},
    {"gauge", "vantel.ui.control.Gauge"},
    {"hyperlink", "vantel.ui.control.Hyperlink"},
    {"label", "vantel.ui.control.Label"},
    {"lineargauge", "vantel.ui.control.LinearGauge"},
    {"listbox", "vantel.ui.control.ListBox"},
    {"ninetydegreegauge", "vantel.ui.control.NinetyDegreeGauge"},
    {"numericeditfield", "vantel.ui.control.NumericEditField"},
    {"radiobutton", "vantel.ui.control.RadioButton"},
    {"rangeslider", "vantel.ui.control.RangeSlider"},
    {"rockerswitch", "vantel.ui.control.RockerSwitch"},
    {"semicirculargauge", "vantel.ui.control.SemicircularGauge"},
    {"slider", "vantel.ui.control.Slider"},
    {"spinner", "vantel.ui.control.Spinner"},
    {"statebutton", "vantel.ui.control.StateButton"},
    {"switch", "vantel.ui.control.Switch"},
    {"textarea", "vantel.ui.control.TextArea"},
    {"togglebutton", "vantel.ui.control.ToggleButton"},
    {"toggleswitch", "vantel.ui.control.ToggleSwitch"},
    {"passwordfield", "vantel.ui.control.internal.PasswordField"},
    {"scrollbarslider", "vantel.ui.control.internal.ScrollbarSlider"},
    {"workspacedropdown", "vantel.ui.control.internal.model.WorkspaceDropDown"},
};

[[maybe_unused]] bool isLowerCase(const char* s) {
  for (; *s; ++s)
    if (std::isupper(static_cast<unsigned char>(*s))) return false;
  return true;
}

}  // namespace

const ClassNameMap& getClassNameMap() {
  static const ClassNameMap map = [] {
    ClassNameMap m;
    for (const Entry& e : kClasses) {
      assert(isLowerCase(e.shortName) && "short class names are lower case");
      assert(m.find(e.shortName) == m.end() && "each short class name names one class");
      m.emplace(e.shortName, e.fullName);
    }
    return m;
  }();
  return map;
}

const ClassNameMap& getReverseClassNameMap() {
  static const ClassNameMap map = [] {
    ClassNameMap m;
    for (const Entry& e : kClasses) m.emplace(e.fullName, e.shortName);
    return m;
  }();
  return map;
}

}  // namespace sgdatatypes::typemap
