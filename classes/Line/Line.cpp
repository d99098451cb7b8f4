// The hand-written half of Line: where a line may live and whether its data
// can be drawn.
#include "sgutils/objects/Line.gen.h"

#include "sgclasses/ClassNames.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {
std::size_t count(const vxArray* data) { return data ? vxGetNumberOfElements(data) : 0; }
}  // namespace

bool Line::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kAxesClass, kGroupClass}); }

bool Line::isDataValid() const {
  const std::size_t n = count(getXData());
  if (count(getYData()) != n) return false;
  const std::size_t z = count(getZData());
  return z == 0 || z == n;
}

}  // namespace sgclasses
