// Plotting into axes: line specifications, hold and the plot itself.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

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
SGCLASSES_API COSInterfacePtr plot(const COSInterfacePtr& axes, const vxArray* x, const vxArray* y,
                                   const LineSpec& spec, std::span<const vxArray* const> pairs = {});

}  // namespace sgclasses
