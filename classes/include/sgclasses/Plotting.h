// Plotting into axes: line specifications, hold and the plot itself.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "sgclasses/SgclassesExport.h"
#include "sgdatatypes/RGBAColor.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace sgclasses {

// A line specification such as "r--o": colour, line style and marker, each
// optional. A marker alone means no line.
struct LineSpec {
  std::optional<graphics::datatype::RGBAColor> color;
  std::string lineStyle;  // empty: not given
  std::string marker;     // empty: not given
};

// Parses a specification; nullopt when the text is not one.
SGCLASSES_API std::optional<LineSpec> parseLineSpec(std::string_view text);

// Hold: "add" keeps the axes' children for the next plot, "replace" clears
// them.
SGCLASSES_API void setHold(const COSInterfacePtr& axes, bool on);
SGCLASSES_API bool isHoldOn(const COSInterfacePtr& axes);

// Plots y over x (x may be null: 1..n) in the axes: clears the axes first
// when its NextPlot is "replace"; the line takes the axes' next colour
// unless the line spec (`r--`) or the pairs give one. Returns the new line.
// x and y must be vectors ("VANTEL:sgclasses:PlotNotVector").
SGCLASSES_API COSInterfacePtr plot(const COSInterfacePtr& axes, const vxArray* x, const vxArray* y,
                                   const LineSpec& spec, std::span<const vxArray* const> pairs = {});

// One data group of a plot call: y (and x, or null for 1..n) and the line
// spec (colour, style, marker) that follows it.
struct PlotSeries {
  const vxArray* x = nullptr;
  const vxArray* y = nullptr;
  LineSpec spec;
};

// Plots every group in the axes, clearing it once first when its NextPlot is
// "replace": a vector makes one line; a matrix makes one line per column
// (plotted against 1..rows, or against a vector x whose length matches its
// rows, else its columns); a matrix x with a vector y gives one line per
// column of x; two matrices of one size pair column with column. The pairs
// go to every line. Returns the lines in order.
SGCLASSES_API std::vector<COSInterfacePtr> plot(const COSInterfacePtr& axes, std::span<const PlotSeries> series,
                                                std::span<const vxArray* const> pairs = {});

}  // namespace sgclasses
