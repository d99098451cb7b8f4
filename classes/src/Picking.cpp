#include "sgclasses/Picking.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "PickShapes.h"
#include "sgclasses/AxesFrame.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/interaction/HitEventData.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/Line.gen.h"
#include "sgutils/objects/Patch.gen.h"
#include "sgutils/objects/Text.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

using graphics::datatype::PickableParts;

namespace {


// Lines within this share of the axes' width or height are hit.
constexpr double kTolerance = 0.01;

// Whether the geometry of `object` may be hit at all: not with
// PickableParts "none", and only while visible unless it is "all".
bool hittableGeometry(COSInterface* object) {
  auto* node = sgutils::blockOf<GraphicsNode>(object, GraphicsNode::classID());
  if (!node) return false;
  const PickableParts parts = node->getPickableParts();
  return parts == PickableParts::All || (parts == PickableParts::Visible && node->getVisible());
}

// A hittable object takes the hit itself when its HitTest is on.
bool takesHits(COSInterface* object) {
  auto* node = sgutils::blockOf<GraphicsNode>(object, GraphicsNode::classID());
  return node && node->getHitTest() && hittableGeometry(object);
}

struct Nearest {
  double distance = std::numeric_limits<double>::infinity();
  double x = NAN, y = NAN;  // in data units
};

// The nearest point of the line's polyline to the place (fx, fy) of the
// frame, measured as the line is drawn: each point at its place in the
// frame, a NaN or a value a log axis has no place for breaking the polyline.
Nearest nearestOnLine(const Line& line, const AxesFrame& frame, double fx, double fy) {
  Nearest best;
  const vxArray* xs = line.getXData();
  const vxArray* ys = line.getYData();
  if (!xs || !ys || !vxIsDouble(xs) || !vxIsDouble(ys)) return best;
  const double* px = vxGetPr(xs);
  const double* py = vxGetPr(ys);
  const std::size_t n = vxGetNumberOfElements(xs);
  bool havePrevious = false;
  double qx = 0, qy = 0;  // the previous point's place
  for (std::size_t i = 0; i < n; ++i) {
    const double ax = frame.px(px[i]), ay = frame.py(py[i]);
    if (!std::isfinite(ax) || !std::isfinite(ay)) {
      havePrevious = false;
      continue;
    }
    double d = std::hypot(ax - fx, ay - fy);
    if (d < best.distance) best = {d, px[i], py[i]};
    if (havePrevious) {
      // The foot of the perpendicular on the segment from the previous point.
      const double ux = ax - qx, uy = ay - qy;
      const double len2 = ux * ux + uy * uy;
      const double t = len2 == 0 ? 0 : ((fx - qx) * ux + (fy - qy) * uy) / len2;
      d = std::hypot(qx + t * ux - fx, qy + t * uy - fy);
      if (t > 0 && t < 1 && d < best.distance)
        best = {d, frame.betweenX(px[i - 1], px[i], t), frame.betweenY(py[i - 1], py[i], t)};
    }
    havePrevious = true;
    qx = ax;
    qy = ay;
  }
  return best;
}

// Newest child first: what was added last lies on top.
COSInterfacePtr pickBelow(COSInterface* axes, COSInterface* container, const AxesFrame& frame, double fx, double fy,
                          std::array<double, 3>& point) {
  static const COSID group(kGroupClass);
  for (COSInterface* child = container->getNewestChild(); child; child = child->getOlderSibling()) {
    if (child->isDestroyed() || child->isBeingDestroyed() || !hittableGeometry(child)) continue;
    const COSClass* cls = child->getClass();
    if (cls->isSubclassOf(group)) {
      if (COSInterfacePtr found = pickBelow(axes, child, frame, fx, fy, point)) return found;
      continue;
    }
    if (cls->isSubclassOf(Text::classID())) {
      if (pick::hitsText(*sgutils::blockOf<Text>(child, Text::classID()), axes, frame, fx, fy, kTolerance))
        return COSInterfacePtr(child);
      continue;
    }
    if (cls->isSubclassOf(Patch::classID())) {
      if (pick::hitsPatch(*sgutils::blockOf<Patch>(child, Patch::classID()), frame, fx, fy, kTolerance, point))
        return COSInterfacePtr(child);
      continue;
    }
    if (!cls->isSubclassOf(Line::classID())) continue;
    const Line* line = sgutils::blockOf<Line>(child, Line::classID());
    if (!line || !line->isDataValid()) continue;
    const Nearest near = nearestOnLine(*line, frame, fx, fy);
    if (near.distance <= kTolerance) {
      point = {near.x, near.y, 0};
      return COSInterfacePtr(child);
    }
  }
  return {};
}

}  // namespace

COSInterfacePtr hitTarget(COSInterface* object) {
  // The pointer lives in a figure: the root never takes a hit.
  static const COSID root(kRootClass);
  for (COSInterface* up = object; up && !up->getClass()->isSubclassOf(root); up = up->getOwnerObject())
    if (!up->isDestroyed() && !up->isBeingDestroyed() && takesHits(up)) return COSInterfacePtr(up);
  return {};
}

COSInterfacePtr reportHit(COSInterface* object, graphics::eventdata::HitImpl hit) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return {};
  COSInterfacePtr target = hitTarget(object);
  if (!target) return {};
  if (!hit.primitive) hit.primitive = COSInterfacePtr(object);
  static const COSID figureClass(kFigureClass);
  for (COSInterface* up = target.get(); up; up = up->getOwnerObject()) {
    if (!up->getClass()->isSubclassOf(figureClass)) continue;
    sgutils::blockOf<Figure>(up, Figure::classID())->setCurrentObject(target);
    break;
  }
  graphics::eventdata::fireHitEvent(target, hit);
  return target;
}

COSInterfacePtr pickInAxes(COSInterface* axes, double x, double y, std::array<double, 3>& point) {
  // The frame over a unit box: distances are shares of the axes' width and
  // height, measured where the renderer draws.
  const AxesFrame frame = AxesFrame::of(axes, 0, 0, 1, 1);
  point = {x, y, 0};
  const double fx = frame.px(x), fy = frame.py(y);
  if (!std::isfinite(fx) || !std::isfinite(fy)) return COSInterfacePtr(axes);
  if (COSInterfacePtr found = pickBelow(axes, axes, frame, fx, fy, point)) return found;
  return COSInterfacePtr(axes);
}

}  // namespace sgclasses
