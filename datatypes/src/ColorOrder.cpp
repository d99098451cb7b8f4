// Construction, checking and conversion of the ColorOrder table.
#include "sgdatatypes/ColorOrder.h"

#include <cassert>

#include "ColorRows.h"

namespace graphics::datatype {

ColorOrder::ColorOrder() : values_{0.0, 0.0, 0.0} {}

ColorOrder::ColorOrder(const vxArray* value) : values_(detail::readColorRows(value, "VANTEL:datatypes:InvalidColorOrder", "ColorOrder")) {}

ColorOrder::ColorOrder(std::vector<double> columnMajor) : values_(std::move(columnMajor)) {
  detail::checkColorRows(values_, "VANTEL:datatypes:InvalidColorOrder", "ColorOrder");
}

vxArray* ColorOrder::toArray() const { return detail::colorRowsToArray(values_); }

RGBAColor ColorOrder::at(std::size_t row) const {
  assert(row < rows() && "colour row out of range");
  const std::size_t n = rows();
  return RGBAColor(values_[row], values_[row + n], values_[row + 2 * n]);
}

}  // namespace graphics::datatype
