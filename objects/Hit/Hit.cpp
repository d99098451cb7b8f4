// The hand-written half of Hit: taking the values of a native hit.
#include "sgutils/objects/Hit.gen.h"

#include <cmath>

#include "vcos/COSValue.h"

namespace graphics::eventdata {

void Hit::assign(const HitImpl& hit) {
  button_ = hit.button;
  // A hit reported without a point (NaN) keeps the origin: a Point3 is finite.
  const auto& p = hit.intersectionPoint;
  if (std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]))
    intersectionPoint_ = graphics::datatype::Point3(p[0], p[1], p[2]);
  primitive_ = hit.primitive;
}

COSValue Hit::getButtonImpl(COSPropInfo*, const COSClient*, COSInterface*) { return COSValue::fromInt(button_); }

void Hit::setButtonImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  button_ = static_cast<std::int32_t>(value.asInt());
}

}  // namespace graphics::eventdata
