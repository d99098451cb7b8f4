// The one export path of the renderer and its views. Not installed.
#pragma once

#include <string>

#include "sgrender/RenderStats.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class DrawnObjects;

// What FigureRenderer::exportFigure does; with `drawn`, objects whose
// recording is still good are replayed rather than drawn again.
RenderStats writePicture(const COSInterfacePtr& figure, const std::string& path, double scale, DrawnObjects* drawn);

}  // namespace sgrender
