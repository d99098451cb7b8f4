#include "TreePainter.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "CairoHandles.h"
#include "DrawnObjects.h"
#include "Properties.h"
#include "sgclasses/AxesTexts.h"
#include "sgclasses/ClassNames.h"
#include "sgrender/TickSteps.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgrender {
namespace {

constexpr double kPxPerPt = 96.0 / 72.0;
constexpr double kTickLength = 5.0;
// Lines with more points than this to each device column are dense.
constexpr double kDensePointsPerColumn = 4;
// How many runs a view keeps of an axes' objects for raster pictures.
constexpr std::size_t kRunsPerAxes = 16;

// Children oldest first: the tree keeps them newest first.
std::vector<COSInterface*> childrenInDrawOrder(COSInterface* parent) {
  std::vector<COSInterface*> out;
  for (COSInterface* c = parent->getNewestChild(); c; c = c->getOlderSibling()) out.push_back(c);
  std::reverse(out.begin(), out.end());
  return out;
}

bool finite(double x, double y) { return std::isfinite(x) && std::isfinite(y); }

std::string tickLabel(double t) {
  char buf[32];
  std::snprintf(buf, sizeof buf, "%g", t);
  return buf;
}

struct LayoutDeleter {
  void operator()(PangoLayout* l) const { g_object_unref(l); }
};
struct FontDeleter {
  void operator()(PangoFontDescription* d) const { pango_font_description_free(d); }
};

// Builds a polyline's path with the points that fall in one device column
// merged into the first, lowest, highest and last of them: the same pixels
// are covered, and a line of 100,000 points costs about as much as one of a
// few thousand.
class ColumnReducer {
 public:
  explicit ColumnReducer(cairo_t* cr) : cr_(cr) {}
  void add(double x, double y) {
    const double col = std::floor(x);
    if (count_ > 0 && col == col_) {
      if (y < lo_.y) lo_ = {x, y, count_};
      if (y > hi_.y) hi_ = {x, y, count_};
      last_ = {x, y, count_};
      ++count_;
      return;
    }
    flush();
    col_ = col;
    first_ = lo_ = hi_ = last_ = {x, y, 0};
    count_ = 1;
  }
  void liftPen() {
    flush();
    pen_ = false;
  }

 private:
  struct Pt {
    double x, y;
    std::size_t order;
  };
  void to(const Pt& p) {
    if (pen_) cairo_line_to(cr_, p.x, p.y);
    else cairo_move_to(cr_, p.x, p.y);
    pen_ = true;
  }
  void flush() {
    if (count_ == 0) return;
    to(first_);
    const Pt& a = lo_.order < hi_.order ? lo_ : hi_;
    const Pt& b = lo_.order < hi_.order ? hi_ : lo_;
    if (a.order != 0) to(a);
    if (b.order != 0 && b.order != a.order) to(b);
    if (last_.order != 0 && last_.order != b.order && last_.order != a.order) to(last_);
    count_ = 0;
  }

  cairo_t* cr_;
  bool pen_ = false;
  double col_ = 0;
  std::size_t count_ = 0;
  Pt first_{}, lo_{}, hi_{}, last_{};
};

}  // namespace

TreePainter::TreePainter(cairo_t* cr, double width, double height, double scale, DrawnObjects* drawn)
    : cr_(cr), width_(width), height_(height), scale_(scale), drawn_(drawn) {}

void TreePainter::setColor(const std::array<double, 3>& c, double alpha) {
  cairo_set_source_rgba(cr_, c[0], c[1], c[2], alpha);
}

void TreePainter::setDash(const std::string& style, double width) {
  const double u = std::max(width, 1.0);
  if (style == "--") {
    const double d[] = {6 * u, 4 * u};
    cairo_set_dash(cr_, d, 2, 0);
  } else if (style == ":") {
    const double d[] = {1 * u, 3 * u};
    cairo_set_dash(cr_, d, 2, 0);
  } else if (style == "-.") {
    const double d[] = {6 * u, 3 * u, 1 * u, 3 * u};
    cairo_set_dash(cr_, d, 4, 0);
  } else {
    cairo_set_dash(cr_, nullptr, 0, 0);
  }
}

void TreePainter::paintFigure(COSInterface* figure) {
  if (auto c = props::color(figure, "Color")) {
    setColor(*c);
    cairo_paint(cr_);
  }
  for (COSInterface* child : childrenInDrawOrder(figure))
    if (sgclasses::isOfClass(child, {sgclasses::kAxesClass}) && props::isOn(child, "Visible")) paintAxes(child);
}

void TreePainter::paintAxes(COSInterface* axes) {
  ++stats_.axes;
  std::vector<double> pos = props::numbers(axes, "Position");
  if (pos.size() < 4) return;
  const Frame f =
      Frame::of(axes, pos[0] * width_, height_ - (pos[1] + pos[3]) * height_, pos[2] * width_, pos[3] * height_);
  if (auto c = props::color(axes, "Color")) {
    setColor(*c);
    cairo_rectangle(cr_, f.x0, f.y0, f.w, f.h);
    cairo_fill(cr_);
  }
  const int maxX = std::max(2, int(f.w / (80 * scale_)) + 1);
  const int maxY = std::max(2, int(f.h / (50 * scale_)) + 1);
  const std::vector<double> xt = TickSteps::ticksFor(f.xlo, f.xhi, maxX, f.xlog);
  const std::vector<double> yt = TickSteps::ticksFor(f.ylo, f.yhi, maxY, f.ylog);

  // Minor grid, then grid, under the data, each in its colour at its alpha.
  cairo_set_line_width(cr_, 0.5 * kPxPerPt * scale_);
  setDash("-", 1);
  const auto minorGrid = props::color(axes, "MinorGridColor");
  const double minorAlpha = props::number(axes, "MinorGridAlpha", 0.25);
  // Dotted, so that it reads as the lesser grid at any alpha.
  setDash(":", 0.5 * kPxPerPt * scale_);
  if (minorGrid && props::isOn(axes, "XMinorGrid")) {
    setColor(*minorGrid, minorAlpha);
    for (double t : TickSteps::minorTicksFor(f.xlo, f.xhi, maxX, f.xlog)) {
      cairo_move_to(cr_, f.px(t), f.y0);
      cairo_line_to(cr_, f.px(t), f.y0 + f.h);
    }
    cairo_stroke(cr_);
  }
  if (minorGrid && props::isOn(axes, "YMinorGrid")) {
    setColor(*minorGrid, minorAlpha);
    for (double t : TickSteps::minorTicksFor(f.ylo, f.yhi, maxY, f.ylog)) {
      cairo_move_to(cr_, f.x0, f.py(t));
      cairo_line_to(cr_, f.x0 + f.w, f.py(t));
    }
    cairo_stroke(cr_);
  }
  setDash("-", 1);
  const auto grid = props::color(axes, "GridColor");
  const double gridAlpha = props::number(axes, "GridAlpha", 0.15);
  cairo_set_line_width(cr_, 0.5 * kPxPerPt * scale_);
  setDash("-", 1);
  if (grid && props::isOn(axes, "XGrid")) {
    setColor(*grid, gridAlpha);
    for (double t : xt) {
      cairo_move_to(cr_, f.px(t), f.y0);
      cairo_line_to(cr_, f.px(t), f.y0 + f.h);
    }
    cairo_stroke(cr_);
  }
  if (grid && props::isOn(axes, "YGrid")) {
    setColor(*grid, gridAlpha);
    for (double t : yt) {
      cairo_move_to(cr_, f.x0, f.py(t));
      cairo_line_to(cr_, f.x0 + f.w, f.py(t));
    }
    cairo_stroke(cr_);
  }

  // The data, clipped to the axes' rectangle.
  // Read without making a label the axes does not have yet.
  const auto [title, xLabel, yLabel] = sgclasses::axesOwnTexts(axes);
  const OwnTexts own{title.get(), xLabel.get(), yLabel.get()};
  cairo_save(cr_);
  cairo_rectangle(cr_, f.x0, f.y0, f.w, f.h);
  cairo_clip(cr_);
  if (drawn_ && cairo_surface_get_type(cairo_get_target(cr_)) == CAIRO_SURFACE_TYPE_IMAGE)
    paintRuns(axes, f, own);
  else
    paintChildren(axes, f, own);
  cairo_restore(cr_);

  const std::array<double, 2> tickText = paintTicks(axes, f);
  // Outside the clip: the title centred above the box, the x label centred
  // below the tick labels, the y label (turned upright by its Rotation)
  // centred left of them.
  auto shown = [](const COSInterfacePtr& t) { return t && !t->isDestroyed() && props::isOn(t.get(), "Visible"); };
  if (shown(title)) paintText(title.get(), f.x0 + f.w / 2, f.y0 - 6 * scale_, 0.5, 1);
  if (shown(xLabel)) paintText(xLabel.get(), f.x0 + f.w / 2, f.y0 + f.h + 6 * scale_ + tickText[0], 0.5, 0);
  if (shown(yLabel)) paintText(yLabel.get(), f.x0 - 8 * scale_ - tickText[1], f.y0 + f.h / 2, 0.5, 1);
}

std::array<double, 2> TreePainter::paintTicks(COSInterface* axes, const Frame& f) {
  std::array<double, 2> extent{0, 0};
  const double lw = props::number(axes, "LineWidth", 0.5) * kPxPerPt * scale_;
  const double fontPt = props::number(axes, "FontSize", 10);
  const bool box = props::isOn(axes, "Box");
  const int maxX = std::max(2, int(f.w / (80 * scale_)) + 1);
  const int maxY = std::max(2, int(f.h / (50 * scale_)) + 1);
  cairo_set_line_width(cr_, lw);
  setDash("-", 1);
  const double tick = kTickLength * scale_;
  if (auto xc = props::color(axes, "XColor")) {
    setColor(*xc);
    cairo_move_to(cr_, f.x0, f.y0 + f.h);
    cairo_line_to(cr_, f.x0 + f.w, f.y0 + f.h);
    if (box) {
      cairo_move_to(cr_, f.x0, f.y0);
      cairo_line_to(cr_, f.x0 + f.w, f.y0);
    }
    for (double t : TickSteps::ticksFor(f.xlo, f.xhi, maxX, f.xlog)) {
      cairo_move_to(cr_, f.px(t), f.y0 + f.h);
      cairo_line_to(cr_, f.px(t), f.y0 + f.h - tick);
    }
    cairo_stroke(cr_);
    for (double t : TickSteps::ticksFor(f.xlo, f.xhi, maxX, f.xlog)) {
      setColor(*xc);
      const auto size = label(tickLabel(t), f.px(t), f.y0 + f.h + 3 * scale_, 0.5, 0, fontPt, false, "", 0);
      extent[0] = std::max(extent[0], double(size[1]));
    }
  }
  if (auto yc = props::color(axes, "YColor")) {
    setColor(*yc);
    cairo_move_to(cr_, f.x0, f.y0);
    cairo_line_to(cr_, f.x0, f.y0 + f.h);
    if (box) {
      cairo_move_to(cr_, f.x0 + f.w, f.y0);
      cairo_line_to(cr_, f.x0 + f.w, f.y0 + f.h);
    }
    for (double t : TickSteps::ticksFor(f.ylo, f.yhi, maxY, f.ylog)) {
      cairo_move_to(cr_, f.x0, f.py(t));
      cairo_line_to(cr_, f.x0 + tick, f.py(t));
    }
    cairo_stroke(cr_);
    for (double t : TickSteps::ticksFor(f.ylo, f.yhi, maxY, f.ylog)) {
      setColor(*yc);
      const auto size = label(tickLabel(t), f.x0 - 4 * scale_, f.py(t), 1, 0.5, fontPt, false, "", 0);
      extent[1] = std::max(extent[1], double(size[0]));
    }
  }
  return extent;
}

void TreePainter::paintChildren(COSInterface* parent, const Frame& f, const OwnTexts& skip) {
  for (COSInterface* child : childrenInDrawOrder(parent)) {
    if (std::find(skip.begin(), skip.end(), child) != skip.end() || !props::isOn(child, "Visible")) continue;
    if (sgclasses::isOfClass(child, {sgclasses::kLineClass})) {
      paintLeaf(child, f, &TreePainter::paintLine);
    } else if (sgclasses::isOfClass(child, {sgclasses::kPatchClass})) {
      paintLeaf(child, f, &TreePainter::paintPatch);
    } else if (sgclasses::isOfClass(child, {sgclasses::kTextClass})) {
      paintLeaf(child, f, &TreePainter::paintTextInAxes);
    } else if (sgclasses::isOfClass(child, {sgclasses::kGroupClass})) {
      paintChildren(child, f, OwnTexts{});
    }
  }
}

void TreePainter::paintLeaf(COSInterface* object, const Frame& f,
                            void (TreePainter::*paint)(COSInterface*, const Frame&)) {
  if (!drawn_) {
    (this->*paint)(object, f);
    return;
  }
  DrawnObjects::Drawing drawing = drawn_->find(object, f);
  if (drawing.recording) {
    ++stats_.reused;
  } else {
    // Draw into a recording of the object's own, then keep it. The context
    // goes back to the picture's however the drawing ends.
    Surface fresh(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
    Context rc(cairo_create(fresh.get()));
    {
      DrawInto into(cr_, rc.get());
      (this->*paint)(object, f);
    }
    rc.reset();
    drawing = drawn_->store(object, f, std::move(fresh));
  }
  if (drawing.ink.width > 0 && drawing.ink.height > 0) {
    // Replaying onto pixels goes through a scratch image of the clip; the
    // ink rectangle keeps it as small as the object.
    cairo_save(cr_);
    cairo_rectangle(cr_, drawing.ink.x, drawing.ink.y, drawing.ink.width, drawing.ink.height);
    cairo_clip(cr_);
    cairo_set_source_surface(cr_, drawing.recording, 0, 0);
    cairo_paint(cr_);
    cairo_restore(cr_);
  }
}

void TreePainter::collectLeaves(COSInterface* parent, const OwnTexts& skip,
                                std::vector<std::pair<COSInterface*, PaintFn>>& out) {
  for (COSInterface* child : childrenInDrawOrder(parent)) {
    if (std::find(skip.begin(), skip.end(), child) != skip.end() || !props::isOn(child, "Visible")) continue;
    if (sgclasses::isOfClass(child, {sgclasses::kLineClass})) out.emplace_back(child, &TreePainter::paintLine);
    else if (sgclasses::isOfClass(child, {sgclasses::kPatchClass})) out.emplace_back(child, &TreePainter::paintPatch);
    else if (sgclasses::isOfClass(child, {sgclasses::kTextClass})) out.emplace_back(child, &TreePainter::paintTextInAxes);
    else if (sgclasses::isOfClass(child, {sgclasses::kGroupClass})) collectLeaves(child, OwnTexts{}, out);
  }
}

void TreePainter::paintRuns(COSInterface* axes, const Frame& f, const OwnTexts& skip) {
  std::vector<std::pair<COSInterface*, PaintFn>> leaves;
  collectLeaves(axes, skip, leaves);
  std::vector<DrawnObjects::Run>& runs = drawn_->runsOf(axes, f);
  // About sixteen runs: one change redraws a sixteenth of the objects and
  // composites the other runs' pixels, at one box-sized image per run.
  const std::size_t per = std::max<std::size_t>(1, (leaves.size() + kRunsPerAxes - 1) / kRunsPerAxes);
  const std::size_t count = (leaves.size() + per - 1) / per;
  runs.resize(count);
  const int ix = int(std::floor(f.x0)), iy = int(std::floor(f.y0));
  const int iw = int(std::ceil(f.x0 + f.w)) - ix, ih = int(std::ceil(f.y0 + f.h)) - iy;
  if (iw <= 0 || ih <= 0) return;
  for (std::size_t r = 0; r < count; ++r) {
    const std::size_t begin = r * per, end = std::min(leaves.size(), begin + per);
    DrawnObjects::Run& run = runs[r];
    // A run is good while it has the same members, none changed.
    bool good = run.image && run.members.size() == end - begin;
    for (std::size_t i = begin; good && i < end; ++i)
      good = run.members[i - begin] == leaves[i].first && drawn_->find(leaves[i].first, f).recording;
    if (good) {
      stats_.reused += end - begin;
    } else {
      run.members.clear();
      run.image.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, iw, ih));
      cairo_surface_set_device_offset(run.image.get(), -ix, -iy);
      Context rc(cairo_create(run.image.get()));
      DrawInto into(cr_, rc.get());
      for (std::size_t i = begin; i < end; ++i) {
        paintLeaf(leaves[i].first, f, leaves[i].second);
        run.members.push_back(leaves[i].first);
      }
    }
    cairo_set_source_surface(cr_, run.image.get(), 0, 0);
    cairo_paint(cr_);
  }
}

void TreePainter::paintTextInAxes(COSInterface* text, const Frame& f) {
  std::vector<double> p = props::numbers(text, "Position");
  if (p.size() >= 2 && finite(f.px(p[0]), f.py(p[1]))) paintText(text, f.px(p[0]), f.py(p[1]), -1, -1);
}

void TreePainter::paintLine(COSInterface* line, const Frame& f) {
  std::vector<double> y = props::numbers(line, "YData");
  std::vector<double> x = props::numbers(line, "XData");
  if (x.empty() && !y.empty())
    for (std::size_t i = 0; i < y.size(); ++i) x.push_back(double(i + 1));
  // 3-D data is drawn as its projection onto the X-Y plane, the view from
  // above, the only view an axes has; a ZData of another length, as the
  // classes judge it, makes the line invalid.
  const std::size_t zCount = props::size(line, "ZData")[0] * props::size(line, "ZData")[1];
  if (x.size() != y.size() || (zCount != 0 && zCount != y.size())) {
    ++stats_.skippedInvalid;  // an invalid line draws nothing
    return;
  }
  ++stats_.lines;
  const auto color = props::color(line, "Color");
  const std::string style = props::text(line, "LineStyle");
  const double lw = props::number(line, "LineWidth", 0.5) * kPxPerPt * scale_;
  if (color && style != "none" && !x.empty()) {
    setColor(*color);
    cairo_set_line_width(cr_, lw);
    cairo_set_line_join(cr_, CAIRO_LINE_JOIN_BEVEL);
    setDash(style, lw);
    // A line with several points to each device column is drawn with the
    // rasteriser's faster antialiasing: its strokes cover whole columns,
    // and the finer coverage would cost most of the picture's time.
    const bool dense = double(x.size()) > kDensePointsPerColumn * f.w;
    if (dense) cairo_set_antialias(cr_, CAIRO_ANTIALIAS_FAST);
    ColumnReducer path(cr_);
    for (std::size_t i = 0; i < x.size(); ++i) {
      // A NaN breaks the line, and so does a value a log scale has no place for.
      const double dx = f.px(x[i]), dy = f.py(y[i]);
      if (!finite(dx, dy)) path.liftPen();
      else path.add(dx, dy);
    }
    path.liftPen();
    cairo_stroke(cr_);
    if (dense) cairo_set_antialias(cr_, CAIRO_ANTIALIAS_DEFAULT);
    setDash("-", 1);
  }
  paintMarkers(line, f, x, y);
}

void TreePainter::paintMarkers(COSInterface* line, const Frame& f, const std::vector<double>& x,
                               const std::vector<double>& y) {
  const std::string marker = props::text(line, "Marker");
  if (marker.empty() || marker == "none") return;
  const auto lineColor = props::color(line, "Color");
  auto edge = props::color(line, "MarkerEdgeColor");
  if (!edge && props::text(line, "MarkerEdgeColor") == "auto") edge = lineColor;
  auto face = props::color(line, "MarkerFaceColor");
  if (!face && props::text(line, "MarkerFaceColor") == "auto") face = lineColor;
  // The classes' factory edge and face are both 'none': such markers take
  // the line's colour, else a marker asked for would never show.
  if (!edge && !face) edge = lineColor;
  const double r = props::number(line, "MarkerSize", 6) * kPxPerPt * scale_ / 2;
  cairo_set_line_width(cr_, props::number(line, "LineWidth", 0.5) * kPxPerPt * scale_);
  const char m = marker[0];
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double cx = f.px(x[i]), cy = f.py(y[i]);
    if (!finite(cx, cy)) continue;
    bool closed = true;
    switch (m) {
      case 'o': case 'c': cairo_new_sub_path(cr_); cairo_arc(cr_, cx, cy, r, 0, 2 * M_PI); break;
      case '.': cairo_new_sub_path(cr_); cairo_arc(cr_, cx, cy, r / 3, 0, 2 * M_PI); break;
      case 's': cairo_rectangle(cr_, cx - r, cy - r, 2 * r, 2 * r); break;
      case 'd':
        cairo_move_to(cr_, cx, cy - r); cairo_line_to(cr_, cx + r, cy); cairo_line_to(cr_, cx, cy + r);
        cairo_line_to(cr_, cx - r, cy); cairo_close_path(cr_); break;
      case '^': case 'v': {
        const double s = m == '^' ? -1 : 1;
        cairo_move_to(cr_, cx, cy + s * r); cairo_line_to(cr_, cx + r, cy - s * r);
        cairo_line_to(cr_, cx - r, cy - s * r); cairo_close_path(cr_); break;
      }
      case 'x':
        cairo_move_to(cr_, cx - r, cy - r); cairo_line_to(cr_, cx + r, cy + r);
        cairo_move_to(cr_, cx - r, cy + r); cairo_line_to(cr_, cx + r, cy - r); closed = false; break;
      default:  // '+', '*' and any other: a cross
        cairo_move_to(cr_, cx - r, cy); cairo_line_to(cr_, cx + r, cy);
        cairo_move_to(cr_, cx, cy - r); cairo_line_to(cr_, cx, cy + r); closed = false; break;
    }
    if (closed && face) {
      setColor(*face);
      cairo_fill_preserve(cr_);
    }
    if (edge || !closed) {
      setColor(edge ? *edge : (face ? *face : std::array<double, 3>{0, 0, 0}));
      cairo_stroke(cr_);
    } else {
      cairo_new_path(cr_);
    }
  }
}

void TreePainter::paintPatch(COSInterface* patch, const Frame& f) {
  ++stats_.patches;
  // Polygons as lists of (x, y): from Faces and Vertices when both are
  // given, else one polygon per column of XData and YData.
  std::vector<std::vector<std::array<double, 2>>> polys;
  const std::vector<double> faces = props::numbers(patch, "Faces");
  const std::vector<double> verts = props::numbers(patch, "Vertices");
  if (!faces.empty() && !verts.empty()) {
    const auto fs = props::size(patch, "Faces");
    const auto vs = props::size(patch, "Vertices");
    for (std::size_t r = 0; r < fs[0]; ++r) {
      auto& poly = polys.emplace_back();
      for (std::size_t c = 0; c < fs[1]; ++c) {
        const double k = faces[c * fs[0] + r];
        if (!std::isfinite(k) || k < 1 || std::size_t(k) > vs[0] || vs[1] < 2) break;
        const std::size_t v = std::size_t(k) - 1;
        poly.push_back({verts[v], verts[vs[0] + v]});
      }
    }
  } else {
    const std::vector<double> x = props::numbers(patch, "XData");
    const std::vector<double> y = props::numbers(patch, "YData");
    if (x.size() == y.size() && !x.empty()) {
      const auto s = props::size(patch, "XData");
      const std::size_t rows = (s[0] == 1 || s[1] == 1) ? x.size() : s[0];
      for (std::size_t start = 0; start < x.size(); start += rows) {
        auto& poly = polys.emplace_back();
        for (std::size_t i = start; i < start + rows; ++i) poly.push_back({x[i], y[i]});
      }
    }
  }
  const auto face = props::color(patch, "FaceColor");
  const auto edge = props::color(patch, "EdgeColor");
  const double alpha = props::number(patch, "FaceAlpha", 1);
  cairo_set_line_width(cr_, props::number(patch, "LineWidth", 0.5) * kPxPerPt * scale_);
  for (const auto& poly : polys) {
    if (poly.size() < 2) continue;
    cairo_new_path(cr_);
    for (const auto& p : poly)
      if (finite(f.px(p[0]), f.py(p[1]))) cairo_line_to(cr_, f.px(p[0]), f.py(p[1]));
    cairo_close_path(cr_);
    if (face) {
      setColor(*face, alpha);
      cairo_fill_preserve(cr_);
    }
    if (edge) {
      setColor(*edge);
      cairo_stroke(cr_);
    }
    cairo_new_path(cr_);
  }
}

void TreePainter::paintText(COSInterface* text, double x, double y, double hAlign, double vAlign) {
  const std::string s = props::text(text, "String");
  const auto color = props::color(text, "Color");
  if (s.empty() || !color) return;
  ++stats_.texts;
  const std::string ha = props::text(text, "HorizontalAlignment");
  const std::string va = props::text(text, "VerticalAlignment");
  const double h = hAlign >= 0 ? hAlign : ha == "center" ? 0.5 : ha == "right" ? 1 : 0;
  const double v = vAlign >= 0 ? vAlign : va == "top" || va == "cap" ? 0 : va == "bottom" || va == "baseline" ? 1 : 0.5;
  setColor(*color);
  label(s, x, y, h, v, props::number(text, "FontSize", 10), props::text(text, "FontWeight") == "bold",
        props::text(text, "FontName"), props::number(text, "Rotation", 0));
}

std::array<int, 2> TreePainter::label(const std::string& text, double x, double y, double h, double v, double sizePt,
                                      bool bold, const std::string& font, double rotationDeg) {
  std::unique_ptr<PangoLayout, LayoutDeleter> layout(pango_cairo_create_layout(cr_));
  // The generic family names of the classes map to fontconfig's.
  const std::string family = font.empty() || font == "SansSerif" || font == "Helvetica" ? "Sans" : font;
  std::unique_ptr<PangoFontDescription, FontDeleter> desc(pango_font_description_from_string(family.c_str()));
  pango_font_description_set_absolute_size(desc.get(), sizePt * kPxPerPt * scale_ * PANGO_SCALE);
  pango_font_description_set_weight(desc.get(), bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_layout_set_font_description(layout.get(), desc.get());
  pango_layout_set_text(layout.get(), text.c_str(), int(text.size()));
  int w = 0, hgt = 0;
  pango_layout_get_pixel_size(layout.get(), &w, &hgt);
  cairo_save(cr_);
  cairo_translate(cr_, x, y);
  cairo_rotate(cr_, -rotationDeg * M_PI / 180);
  cairo_move_to(cr_, -h * w, -v * hgt);
  pango_cairo_show_layout(cr_, layout.get());
  cairo_restore(cr_);
  return {w, hgt};
}

}  // namespace sgrender
