#include "sgclasses/Picking.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "PickShapes.h"
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

std::array<double, 2> limits(COSInterface* axes, const char* name) {
  matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(axes)));
  matrix::unique_vxArray lim(vxGetProperty(self.get(), 0, name));
  const double* p = vxGetPr(lim.get());
  return {p[0], p[1]};
}

struct Nearest {
  double distance = std::numeric_limits<double>::infinity();
  double x = NAN, y = NAN;
};

// The nearest point of the line's polyline to (x, y), measured in axes
// shares; NaN points break the polyline.
Nearest nearestOnLine(const Line& line, double x, double y, double sx, double sy) {
  Nearest best;
  const vxArray* xs = line.getXData();
  const vxArray* ys = line.getYData();
  if (!xs || !ys || !vxIsDouble(xs) || !vxIsDouble(ys)) return best;
  const double* px = vxGetPr(xs);
  const double* py = vxGetPr(ys);
  const std::size_t n = vxGetNumberOfElements(xs);
  auto consider = [&](double ax, double ay) {
    const double d = std::hypot((ax - x) / sx, (ay - y) / sy);
    if (d < best.distance) best = {d, ax, ay};
  };
  for (std::size_t i = 0; i < n; ++i) {
    if (std::isnan(px[i]) || std::isnan(py[i])) continue;
    consider(px[i], py[i]);
    if (i + 1 >= n || std::isnan(px[i + 1]) || std::isnan(py[i + 1])) continue;
    // The foot of the perpendicular, in axes shares so both axes weigh alike.
    const double ux = (px[i + 1] - px[i]) / sx, uy = (py[i + 1] - py[i]) / sy;
    const double len2 = ux * ux + uy * uy;
    if (len2 == 0) continue;
    const double t = (((x - px[i]) / sx) * ux + ((y - py[i]) / sy) * uy) / len2;
    if (t > 0 && t < 1) consider(px[i] + t * (px[i + 1] - px[i]), py[i] + t * (py[i + 1] - py[i]));
  }
  return best;
}

// Newest child first: what was added last lies on top.
COSInterfacePtr pickBelow(COSInterface* axes, COSInterface* container, double x, double y, double sx, double sy,
                          std::array<double, 3>& point) {
  static const COSID group(kGroupClass);
  for (COSInterface* child = container->getNewestChild(); child; child = child->getOlderSibling()) {
    if (child->isDestroyed() || child->isBeingDestroyed() || !hittableGeometry(child)) continue;
    const COSClass* cls = child->getClass();
    if (cls->isSubclassOf(group)) {
      if (COSInterfacePtr found = pickBelow(axes, child, x, y, sx, sy, point)) return found;
      continue;
    }
    if (cls->isSubclassOf(Text::classID())) {
      if (pick::hitsText(*sgutils::blockOf<Text>(child, Text::classID()), axes, x, y, sx, sy, kTolerance)) {
        point = {x, y, 0};
        return COSInterfacePtr(child);
      }
      continue;
    }
    if (cls->isSubclassOf(Patch::classID())) {
      if (pick::hitsPatch(*sgutils::blockOf<Patch>(child, Patch::classID()), x, y, sx, sy, kTolerance, point))
        return COSInterfacePtr(child);
      continue;
    }
    if (!cls->isSubclassOf(Line::classID())) continue;
    const Line* line = sgutils::blockOf<Line>(child, Line::classID());
    if (!line || !line->isDataValid()) continue;
    const Nearest near = nearestOnLine(*line, x, y, sx, sy);
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
  const std::array<double, 2> xl = limits(axes, "XLim"), yl = limits(axes, "YLim");
  point = {x, y, 0};
  if (COSInterfacePtr line = pickBelow(axes, axes, x, y, xl[1] - xl[0], yl[1] - yl[0], point)) return line;
  return COSInterfacePtr(axes);
}

}  // namespace sgclasses
