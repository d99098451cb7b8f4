// One FigureView per figure, made on a figure's first export and dropped
// when the figure is deleted: each later export of the figure redraws only
// what changed since the one before.
#pragma once

#include <cstddef>
#include <string>

#include "sgrender/FigureView.h"
#include "sgrender/RenderStats.h"
#include "sgrender/SgrenderExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class SGRENDER_API FigureViews {
 public:
  // Writes `figure` through its view, made now if it has none. A null,
  // deleted or non-figure object makes no view and gives the errors of
  // FigureRenderer::exportFigure.
  static RenderStats exportFigure(const COSInterfacePtr& figure, const std::string& path, double scale = 1.0);
  // The figure's view, or null when it has none (never exported, or deleted).
  static FigureView* find(const COSInterface* figure);
  // The number of views alive.
  static std::size_t count();
};

}  // namespace sgrender
