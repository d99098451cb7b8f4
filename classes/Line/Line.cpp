// The hand-written half of Line: where a line may live, whether its data
// can be drawn, and the colour of its series.
#include "sgutils/objects/Line.gen.h"

#include <cmath>

#include "sgclasses/ClassNames.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {
std::size_t count(const vxArray* data) { return data ? vxGetNumberOfElements(data) : 0; }
}  // namespace

bool Line::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kAxesClass, kGroupClass}); }

matrix::unique_vxArray Line::seriesColor(const COSInterface* object) {
  const Line* line = sgutils::blockOf<Line>(object, Line::classID());
  if (!line || !(line->getSeriesIndex() >= 1)) return {};
  const COSInterface* parent = object->getOwnerObject();
  const Axes* axes = parent ? sgutils::blockOf<Axes>(parent, Axes::classID()) : nullptr;
  if (!axes) return {};
  const graphics::datatype::ColorOrder& order = axes->getColorOrder();
  if (order.rows() == 0) return {};
  const auto row = static_cast<std::size_t>(std::floor(line->getSeriesIndex()) - 1) % order.rows();
  return matrix::unique_vxArray(order.at(row).toArray());
}

bool Line::isDataValid() const {
  const std::size_t n = count(getXData());
  if (count(getYData()) != n) return false;
  const std::size_t z = count(getZData());
  return z == 0 || z == n;
}

}  // namespace sgclasses
