// Paints a figure's tree onto a Cairo context, oldest child first so that
// newer objects lie on top. Not installed.
#pragma once

#include <array>
#include <string>
#include <vector>

#include <cairo.h>

#include "sgrender/RenderStats.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class TreePainter {
 public:
  // `width` by `height` device units for the figure; `scale` multiplies
  // line widths and font sizes (a resolution option).
  TreePainter(cairo_t* cr, double width, double height, double scale);

  void paintFigure(COSInterface* figure);
  const RenderStats& stats() const { return stats_; }

 private:
  // The data-to-device mapping of the axes being painted.
  struct Frame {
    double x0, y0, w, h;          // device rectangle, y0 at the top
    double xlo, xhi, ylo, yhi;    // limits
    double px(double x) const { return x0 + (x - xlo) / (xhi - xlo) * w; }
    double py(double y) const { return y0 + h - (y - ylo) / (yhi - ylo) * h; }
  };

  void paintAxes(COSInterface* axes);
  void paintChildren(COSInterface* parent, const Frame& f, COSInterface* skip);
  void paintLine(COSInterface* line, const Frame& f);
  void paintPatch(COSInterface* patch, const Frame& f);
  // Alignments below 0 take the text's own properties.
  void paintText(COSInterface* text, double x, double y, double hAlign, double vAlign);
  void paintTicks(COSInterface* axes, const Frame& f);
  void paintMarkers(COSInterface* line, const Frame& f, const std::vector<double>& x, const std::vector<double>& y);

  void setColor(const std::array<double, 3>& c, double alpha = 1.0);
  void setDash(const std::string& style, double width);
  // Draws `text` with its given point at (x, y): h 0 left, 0.5 centre, 1
  // right; v 0 top, 0.5 middle, 1 bottom.
  void label(const std::string& text, double x, double y, double h, double v, double sizePt, bool bold,
             const std::string& font, double rotationDeg);

  cairo_t* cr_;
  double width_, height_, scale_;
  RenderStats stats_;
};

}  // namespace sgrender
