// Line specifications, hold and plot.
#include "sgclasses/Plotting.h"

#include <algorithm>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClient.h"
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

namespace {

bool isVector(const vxArray* a) { return vxGetM(a) <= 1 || vxGetN(a) <= 1; }

// 1..n as a row.
vxArray* steps(std::size_t n) {
  vxArray* row = vxCreateDoubleMatrix(1, n, vxREAL);
  for (std::size_t i = 0; i < n; ++i) vxGetPr(row)[i] = static_cast<double>(i + 1);
  return row;
}

// Column `c` (or row `r`) of a matrix as a row vector.
vxArray* columnOf(const vxArray* a, std::size_t c) {
  const std::size_t m = vxGetM(a);
  vxArray* row = vxCreateDoubleMatrix(1, m, vxREAL);
  std::copy_n(vxGetPr(a) + c * m, m, vxGetPr(row));
  return row;
}
vxArray* rowOf(const vxArray* a, std::size_t r) {
  const std::size_t m = vxGetM(a), n = vxGetN(a);
  vxArray* row = vxCreateDoubleMatrix(1, n, vxREAL);
  for (std::size_t c = 0; c < n; ++c) vxGetPr(row)[c] = vxGetPr(a)[r + c * m];
  return row;
}

struct LineData {
  matrix::unique_vxArray x, y;
  const LineSpec* spec;
};

// The lines one group gives; raises before anything is made.
void splitSeries(const PlotSeries& series, std::vector<LineData>& lines) {
  const vxArray* x = series.x;
  const vxArray* y = series.y;
  if (!y || !vxIsDouble(y) || vxIsComplex(y) || vxGetNumberOfDimensions(y) > 2)
    throw Error("VANTEL:sgclasses:PlotDataNotNumeric");
  if (x && (!vxIsDouble(x) || vxIsComplex(x) || vxGetNumberOfDimensions(x) > 2))
    throw Error("VANTEL:sgclasses:PlotDataNotNumeric");
  const auto add = [&](vxArray* xs, vxArray* ys) { lines.push_back({matrix::unique_vxArray(xs), matrix::unique_vxArray(ys), &series.spec}); };
  const std::size_t m = vxGetM(y), n = vxGetN(y);
  if (!x) {
    if (isVector(y)) {
      add(steps(vxGetNumberOfElements(y)), vxDuplicateArray(y));
    } else {
      for (std::size_t c = 0; c < n; ++c) add(steps(m), columnOf(y, c));
    }
    return;
  }
  const std::size_t xm = vxGetM(x), xn = vxGetN(x);
  if (isVector(x) && isVector(y)) {
    if (vxGetNumberOfElements(x) != vxGetNumberOfElements(y)) throw Error("VANTEL:sgclasses:PlotLengthsDiffer");
    add(vxDuplicateArray(x), vxDuplicateArray(y));
  } else if (isVector(x)) {
    const std::size_t length = vxGetNumberOfElements(x);
    if (length == m) {
      for (std::size_t c = 0; c < n; ++c) add(vxDuplicateArray(x), columnOf(y, c));
    } else if (length == n) {
      for (std::size_t r = 0; r < m; ++r) add(vxDuplicateArray(x), rowOf(y, r));
    } else {
      throw Error("VANTEL:sgclasses:PlotLengthsDiffer");
    }
  } else if (isVector(y)) {
    const std::size_t length = vxGetNumberOfElements(y);
    if (length == xm) {
      for (std::size_t c = 0; c < xn; ++c) add(columnOf(x, c), vxDuplicateArray(y));
    } else if (length == xn) {
      for (std::size_t r = 0; r < xm; ++r) add(rowOf(x, r), vxDuplicateArray(y));
    } else {
      throw Error("VANTEL:sgclasses:PlotLengthsDiffer");
    }
  } else {
    if (xm != m || xn != n) throw Error("VANTEL:sgclasses:PlotLengthsDiffer");
    for (std::size_t c = 0; c < n; ++c) add(columnOf(x, c), columnOf(y, c));
  }
}

}  // namespace

std::vector<COSInterfacePtr> plot(const COSInterfacePtr& axes, std::span<const PlotSeries> series,
                                  std::span<const vxArray* const> pairs) {
  Axes& block = axesBlock(axes);
  std::vector<LineData> lines;
  for (const PlotSeries& one : series) splitSeries(one, lines);

  // The lines are made first and the axes cleared after, so a failure (a bad
  // name-value pair) takes back the lines made so far and leaves the axes as
  // it was.
  std::vector<COSInterfacePtr> made;
  made.reserve(lines.size());
  std::vector<matrix::unique_vxArray> owned;
  std::vector<const vxArray*> inputs;
  try {
    for (LineData& data : lines) {
      owned.clear();
      inputs.clear();
      const auto add = [&](const char* name, vxArray* value) {
        owned.emplace_back(vxCreateString(name));
        inputs.push_back(owned.back().get());
        owned.emplace_back(value);
        inputs.push_back(owned.back().get());
      };
      add("XData", data.x.release());
      add("YData", data.y.release());
      const LineSpec& spec = *data.spec;
      if (spec.color) add("Color", spec.color->toArray());
      if (!spec.lineStyle.empty()) add("LineStyle", vxCreateString(spec.lineStyle.c_str()));
      if (!spec.marker.empty()) add("Marker", vxCreateString(spec.marker.c_str()));
      inputs.insert(inputs.end(), pairs.begin(), pairs.end());
      made.push_back(create(kLineClass, axes, inputs));
    }
  } catch (...) {
    for (const COSInterfacePtr& line : made)
      if (!line->isDestroyed()) line->deleteObject(COSGetPublicClient());
    throw;
  }

  if (block.getNextPlot() == NextPlot::Replace) block.clearForPlot(made);
  for (const COSInterfacePtr& line : made) {
    Line* lineBlock = sgutils::blockOf<Line>(line.get(), Line::classID());
    // A plot without a colour of its own takes the next one and keeps its
    // place in the order, which a theme change follows; the mode stays auto.
    if (lineBlock->getColorMode() == graphics::datatype::AutoManual::Auto) {
      double index = 0;
      lineBlock->setColor(block.takeNextColor(&index), graphics::datatype::PrivateClient);
      lineBlock->setSeriesIndex(index, graphics::datatype::PrivateClient);
    }
  }
  makeCurrent(axes);
  return made;
}

COSInterfacePtr plot(const COSInterfacePtr& axes, const vxArray* x, const vxArray* y, const LineSpec& spec,
                     std::span<const vxArray* const> pairs) {
  if ((y && !isVector(y)) || (x && !isVector(x))) throw Error("VANTEL:sgclasses:PlotNotVector");
  const PlotSeries one{x, y, spec};
  std::vector<COSInterfacePtr> lines = plot(axes, std::span<const PlotSeries>(&one, 1), pairs);
  if (lines.size() != 1) throw Error("VANTEL:sgclasses:PlotNotVector");
  return lines.front();
}

}  // namespace sgclasses
