// Paints a figure's tree onto a Cairo context, oldest child first so that
// newer objects lie on top. Not installed.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include <cairo.h>

#include "sgclasses/AxesFrame.h"
#include "sgrender/RenderStats.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class TreePainter {
 public:
  // `width` by `height` device units for the figure; `scale` multiplies
  // line widths and font sizes (a resolution option).
  // With `drawn`, lines, patches and texts in axes are replayed from what
  // was drawn before where that is still good, and recorded when redrawn.
  TreePainter(cairo_t* cr, double width, double height, double scale, class DrawnObjects* drawn = nullptr);

  void paintFigure(COSInterface* figure);
  const RenderStats& stats() const { return stats_; }

 private:
  using Frame = sgclasses::AxesFrame;

  void paintAxes(COSInterface* axes);
  // The axes' own texts (title and labels), drawn outside its box, not
  // among its children.
  using OwnTexts = std::array<const COSInterface*, 3>;
  void paintChildren(COSInterface* parent, const Frame& f, const OwnTexts& skip);
  using PaintFn = void (TreePainter::*)(COSInterface*, const Frame&);
  // The visible lines, patches and texts below `parent` in drawing order.
  void collectLeaves(COSInterface* parent, const OwnTexts& skip, std::vector<std::pair<COSInterface*, PaintFn>>& out);
  // An axes' objects onto pixels through the runs `drawn_` keeps.
  void paintRuns(COSInterface* axes, const Frame& f, const OwnTexts& skip);
  // Paints one line, patch or text of an axes, through `drawn_` if any.
  void paintLeaf(COSInterface* object, const Frame& f, void (TreePainter::*paint)(COSInterface*, const Frame&));
  void paintTextInAxes(COSInterface* text, const Frame& f);
  void paintLine(COSInterface* line, const Frame& f);
  void paintPatch(COSInterface* patch, const Frame& f);
  // Alignments below 0 take the text's own properties.
  void paintText(COSInterface* text, double x, double y, double hAlign, double vAlign);
  // Axis lines, ticks and tick labels; gives the height of the x tick
  // labels and the width of the widest y tick label.
  std::array<double, 2> paintTicks(COSInterface* axes, const Frame& f);
  void paintMarkers(COSInterface* line, const Frame& f, const std::vector<double>& x, const std::vector<double>& y);

  void setColor(const std::array<double, 3>& c, double alpha = 1.0);
  void setDash(const std::string& style, double width);
  // Draws `text` with its given point at (x, y): h 0 left, 0.5 centre, 1
  // right; v 0 top, 0.5 middle, 1 bottom.
  // Gives the text's width and height before rotation.
  std::array<int, 2> label(const std::string& text, double x, double y, double h, double v, double sizePt, bool bold,
                           const std::string& font, double rotationDeg);

  // While it lives, the painter draws into another context; the painter's
  // own comes back however the drawing ends.
  class DrawInto {
   public:
    DrawInto(cairo_t*& slot, cairo_t* other) : slot_(slot), saved_(slot) { slot_ = other; }
    ~DrawInto() { slot_ = saved_; }
    DrawInto(const DrawInto&) = delete;
    DrawInto& operator=(const DrawInto&) = delete;

   private:
    cairo_t*& slot_;
    cairo_t* saved_;
  };

  cairo_t* cr_;
  double width_, height_, scale_;
  RenderStats stats_;
  DrawnObjects* drawn_;
};

}  // namespace sgrender
