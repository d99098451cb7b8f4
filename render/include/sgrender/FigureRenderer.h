// Draws a figure and everything visible below it into a picture file.
#pragma once

#include <string>

#include "sgrender/ExportFormat.h"
#include "sgrender/RenderStats.h"
#include "sgrender/SgrenderExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class SGRENDER_API FigureRenderer {
 public:
  // Writes `figure` to `path` in the format its extension names, at the
  // figure's Position size (pixels for PNG, points for SVG and PDF) times
  // `scale`. The file appears whole or not at all: it is written beside its
  // final name and renamed. Errors: "VANTEL:sgrender:UnknownFormat",
  // "VANTEL:sgrender:NotFigure", "VANTEL:sg:DeletedObject",
  // "VANTEL:sgrender:FolderNotFound", "VANTEL:sgrender:CannotWrite".
  static RenderStats exportFigure(const COSInterfacePtr& figure, const std::string& path, double scale = 1.0);
};

}  // namespace sgrender
