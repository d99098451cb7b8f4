#include "PickShapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/Patch.gen.h"
#include "sgutils/objects/Text.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vx/vx.h"

namespace sgclasses::pick {

namespace {

using Polygon = std::vector<std::array<double, 2>>;

bool realMatrix(const vxArray* a) { return a && vxIsDouble(a) && !vxIsComplex(a) && !vxIsEmpty(a); }

// The faces of the patch: rows of Faces into the rows of Vertices (NaN ends
// a face early), else one polygon per column of XData and YData.
std::vector<Polygon> polygonsOf(const Patch& patch) {
  std::vector<Polygon> polygons;
  const vxArray* faces = patch.getFaces();
  const vxArray* vertices = patch.getVertices();
  if (realMatrix(faces) && realMatrix(vertices) && vxGetN(vertices) >= 2) {
    const std::size_t nv = vxGetM(vertices), nf = vxGetM(faces), nc = vxGetN(faces);
    const double* v = vxGetPr(vertices);
    const double* f = vxGetPr(faces);
    for (std::size_t r = 0; r < nf; ++r) {
      Polygon polygon;
      for (std::size_t c = 0; c < nc; ++c) {
        const double index = f[r + c * nf];
        if (std::isnan(index)) break;
        if (index < 1 || index > double(nv) || index != std::floor(index)) {
          polygon.clear();  // a face that names no vertex is not drawn
          break;
        }
        const std::size_t i = static_cast<std::size_t>(index) - 1;
        polygon.push_back({v[i], v[i + nv]});
      }
      if (!polygon.empty()) polygons.push_back(std::move(polygon));
    }
    return polygons;
  }
  const vxArray* xs = patch.getXData();
  const vxArray* ys = patch.getYData();
  if (!realMatrix(xs) || !realMatrix(ys) || vxGetM(xs) != vxGetM(ys) || vxGetN(xs) != vxGetN(ys)) return polygons;
  // A row vector is one polygon, as a column is.
  const bool row = vxGetM(xs) == 1;
  const std::size_t m = row ? vxGetN(xs) : vxGetM(xs), n = row ? 1 : vxGetN(xs);
  const double* px = vxGetPr(xs);
  const double* py = vxGetPr(ys);
  for (std::size_t c = 0; c < n; ++c) {
    Polygon polygon;
    for (std::size_t r = 0; r < m; ++r) polygon.push_back({px[r + c * m], py[r + c * m]});
    polygons.push_back(std::move(polygon));
  }
  return polygons;
}

bool finite(const std::array<double, 2>& p) { return std::isfinite(p[0]) && std::isfinite(p[1]); }

// Even-odd rule over the polygon's finite corners.
bool inside(const Polygon& polygon, double x, double y) {
  bool in = false;
  const std::size_t n = polygon.size();
  for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
    const auto& a = polygon[i];
    const auto& b = polygon[j];
    if (!finite(a) || !finite(b)) continue;
    if ((a[1] > y) != (b[1] > y) && x < (b[0] - a[0]) * (y - a[1]) / (b[1] - a[1]) + a[0]) in = !in;
  }
  return in;
}

}  // namespace

bool hitsPatch(const Patch& patch, const AxesFrame& frame, double fx, double fy, double tolerance,
               std::array<double, 3>& point) {
  double best = std::numeric_limits<double>::infinity();
  std::array<double, 2> nearest{};
  Polygon polygon, data;  // the corners with a place: where drawn, and in data units
  for (const Polygon& corners : polygonsOf(patch)) {
    polygon.clear();
    data.clear();
    for (const auto& c : corners) {
      const std::array<double, 2> p{frame.px(c[0]), frame.py(c[1])};
      if (!finite(p)) continue;
      polygon.push_back(p);
      data.push_back(c);
    }
    if (polygon.size() >= 3 && inside(polygon, fx, fy)) {
      point = {frame.dataX(fx), frame.dataY(fy), 0};
      return true;
    }
    // The closed outline: the last corner joins the first.
    const std::size_t n = polygon.size();
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t j = (i + 1) % n;
      const auto& a = polygon[i];
      const auto& b = polygon[j];
      const double ux = b[0] - a[0], uy = b[1] - a[1];
      const double len2 = ux * ux + uy * uy;
      double t = len2 == 0 ? 0 : ((fx - a[0]) * ux + (fy - a[1]) * uy) / len2;
      t = std::clamp(t, 0.0, 1.0);
      const double d = std::hypot(a[0] + t * ux - fx, a[1] + t * uy - fy);
      if (d < best) {
        best = d;
        nearest = {frame.betweenX(data[i][0], data[j][0], t), frame.betweenY(data[i][1], data[j][1], t)};
      }
    }
  }
  if (best > tolerance) return false;
  point = {nearest[0], nearest[1], 0};
  return true;
}

bool hitsText(const Text& text, COSInterface* axes, const AxesFrame& frame, double fx, double fy, double tolerance) {
  const std::u16string string = text.getString();
  if (string.empty()) return false;
  // The axes' size in pixels: its normalized Position within its figure.
  const Axes* ax = sgutils::blockOf<Axes>(axes, Axes::classID());
  COSInterface* figure = axes->getOwnerObject();
  static const COSID figureClass(kFigureClass);
  if (!ax || !figure || !figure->getClass()->isSubclassOf(figureClass)) return false;
  const auto figurePosition = sgutils::blockOf<Figure>(figure, Figure::classID())->getPosition();
  const auto axesPosition = ax->getPosition();
  const double widthPx = figurePosition.width() * axesPosition.width();
  const double heightPx = figurePosition.height() * axesPosition.height();
  if (!(widthPx > 0) || !(heightPx > 0)) return false;

  const double em = text.getFontSize() * 96.0 / 72.0;
  const double w = 0.6 * em * double(string.size()) / widthPx;  // in axes shares
  const double h = 1.2 * em / heightPx;
  const auto anchor = text.getPosition();
  double left = 0, bottom = 0;
  switch (text.getHorizontalAlignment()) {
    case HorizontalAlignment::Left: left = 0; break;
    case HorizontalAlignment::Center: left = -w / 2; break;
    case HorizontalAlignment::Right: left = -w; break;
  }
  switch (text.getVerticalAlignment()) {
    case VerticalAlignment::Middle: bottom = -h / 2; break;
    case VerticalAlignment::Top:
    case VerticalAlignment::Cap: bottom = -h; break;
    case VerticalAlignment::Bottom:
    case VerticalAlignment::Baseline: bottom = 0; break;
  }
  // Up is positive here; the frame's device y grows downwards.
  const double dx = fx - frame.px(anchor.x()), dy = frame.py(anchor.y()) - fy;
  if (!std::isfinite(dx) || !std::isfinite(dy)) return false;
  return dx >= left - tolerance && dx <= left + w + tolerance && dy >= bottom - tolerance &&
         dy <= bottom + h + tolerance;
}

}  // namespace sgclasses::pick
