// The colours that data values are mapped to: an N-by-3 table of red, green
// and blue values in [0, 1], N >= 1, from the lowest value to the highest.
#pragma once

#include <cstddef>
#include <vector>

#include "sgdatatypes/DatatypesExport.h"
#include "sgdatatypes/RGBAColor.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API ColorMap {
 public:
  // One row, opaque black.
  ColorMap();
  // From an N-by-3 real array; raises "VANTEL:datatypes:InvalidColorMap".
  explicit ColorMap(const vxArray* value);
  // From components stored column by column (all reds, all greens, all
  // blues); raises "VANTEL:datatypes:InvalidColorMap".
  explicit ColorMap(std::vector<double> columnMajor);

  static ColorMap fromArray(const vxArray* value) { return ColorMap(value); }
  // An N-by-3 double array, owned by the caller.
  vxArray* toArray() const;

  std::size_t rows() const noexcept { return values_.size() / 3; }
  RGBAColor at(std::size_t row) const;
  const std::vector<double>& columnMajor() const noexcept { return values_; }

  friend bool operator==(const ColorMap& a, const ColorMap& b) noexcept { return a.values_ == b.values_; }

 private:
  std::vector<double> values_;
};

}  // namespace graphics::datatype
