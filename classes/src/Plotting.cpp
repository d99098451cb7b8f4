// Line specifications, hold and plot.
#include "sgclasses/Plotting.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

using foundation::core::except::Error;
using graphics::datatype::RGBAColor;

std::optional<LineSpec> parseLineSpec(std::string_view text) {
  if (text.empty()) return std::nullopt;
  LineSpec spec;
  for (std::size_t i = 0; i < text.size();) {
    const char c = text[i];
    const std::string_view rest = text.substr(i);
    if (rest.starts_with("--") || rest.starts_with("-.")) {
      if (!spec.lineStyle.empty()) return std::nullopt;
      spec.lineStyle = std::string(rest.substr(0, 2));
      i += 2;
    } else if (c == '-' || c == ':') {
      if (!spec.lineStyle.empty()) return std::nullopt;
      spec.lineStyle = std::string(1, c);
      ++i;
    } else if (std::string_view("rgbcmykw").find(c) != std::string_view::npos) {
      if (spec.color) return std::nullopt;
      spec.color = RGBAColor(std::string_view(&text[i], 1));
      ++i;
    } else if (std::string_view("o+*.xsd^v<>ph").find(c) != std::string_view::npos) {
      if (!spec.marker.empty()) return std::nullopt;
      spec.marker = std::string(1, c);
      ++i;
    } else {
      return std::nullopt;
    }
  }
  if (spec.lineStyle.empty() && !spec.marker.empty()) spec.lineStyle = "none";
  return spec;
}

namespace {
Axes& axesBlock(const COSInterfacePtr& axes) {
  if (!axes || axes->isDestroyed()) throw Error("VANTEL:sg:DeletedObject");
  if (!isOfClass(axes.get(), {kAxesClass})) throw Error("VANTEL:sgclasses:NotAxes");
  return *sgutils::blockOf<Axes>(axes.get(), Axes::classID());
}
}  // namespace

void setHold(const COSInterfacePtr& axes, bool on) {
  axesBlock(axes).setNextPlot(on ? NextPlot::Add : NextPlot::Replace, graphics::datatype::PublicClient);
}

bool isHoldOn(const COSInterfacePtr& axes) { return axesBlock(axes).getNextPlot() == NextPlot::Add; }

COSInterfacePtr plot(const COSInterfacePtr& axes, const vxArray* x, const vxArray* y, const LineSpec& spec,
                     std::span<const vxArray* const> pairs) {
  Axes& block = axesBlock(axes);
  if (!y || !vxIsDouble(y)) throw Error("VANTEL:sgclasses:PlotDataNotNumeric");
  if (x && !vxIsDouble(x)) throw Error("VANTEL:sgclasses:PlotDataNotNumeric");
  matrix::unique_vxArray steps;
  if (!x) {
    const std::size_t n = vxGetNumberOfElements(y);
    steps.reset(vxCreateDoubleMatrix(1, n, vxREAL));
    for (std::size_t i = 0; i < n; ++i) vxGetPr(steps.get())[i] = static_cast<double>(i + 1);
    x = steps.get();
  }
  if (vxGetNumberOfElements(x) != vxGetNumberOfElements(y)) throw Error("VANTEL:sgclasses:PlotLengthsDiffer");

  std::vector<matrix::unique_vxArray> owned;
  std::vector<const vxArray*> inputs;
  const auto add = [&](const char* name, vxArray* value) {
    owned.emplace_back(vxCreateString(name));
    inputs.push_back(owned.back().get());
    owned.emplace_back(value);
    inputs.push_back(owned.back().get());
  };
  add("XData", vxDuplicateArray(x));
  add("YData", vxDuplicateArray(y));
  if (spec.color) add("Color", spec.color->toArray());
  if (!spec.lineStyle.empty()) add("LineStyle", vxCreateString(spec.lineStyle.c_str()));
  if (!spec.marker.empty()) add("Marker", vxCreateString(spec.marker.c_str()));
  inputs.insert(inputs.end(), pairs.begin(), pairs.end());

  if (block.getNextPlot() == NextPlot::Replace) block.clearForPlot();
  COSInterfacePtr line = create(kLineClass, axes, inputs);
  Line* made = sgutils::blockOf<Line>(line.get(), Line::classID());
  // A plot without a colour of its own takes the next one; the mode stays auto.
  if (made->getColorMode() == graphics::datatype::AutoManual::Auto)
    made->setColor(block.takeNextColor(), graphics::datatype::PrivateClient);
  makeCurrent(axes);
  return line;
}

}  // namespace sgclasses
