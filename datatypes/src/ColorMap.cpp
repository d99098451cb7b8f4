// Construction, checking and conversion of the ColorMap table.
#include "sgdatatypes/ColorMap.h"

#include <cassert>

#include "ColorRows.h"

namespace graphics::datatype {

ColorMap::ColorMap() : values_{0.0, 0.0, 0.0} {}

ColorMap::ColorMap(const vxArray* value) : values_(detail::readColorRows(value, "VANTEL:datatypes:InvalidColorMap", "ColorMap")) {}

ColorMap::ColorMap(std::vector<double> columnMajor) : values_(std::move(columnMajor)) {
  detail::checkColorRows(values_, "VANTEL:datatypes:InvalidColorMap", "ColorMap");
}

vxArray* ColorMap::toArray() const { return detail::colorRowsToArray(values_); }

RGBAColor ColorMap::at(std::size_t row) const {
  assert(row < rows() && "colour row out of range");
  const std::size_t n = rows();
  return RGBAColor(values_[row], values_[row + n], values_[row + 2 * n]);
}

}  // namespace graphics::datatype
