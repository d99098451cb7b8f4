// The transparency values that data values are mapped to: a vector of one or
// more values in [0, 1]. Users read it back as a row.
#pragma once

#include <vector>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API AlphaMap {
 public:
  // The single value 1 (opaque).
  AlphaMap() : values_{1.0} {}
  // Raises "VANTEL:datatypes:InvalidAlphaMap".
  explicit AlphaMap(const vxArray* value);
  explicit AlphaMap(std::vector<double> values);

  static AlphaMap fromArray(const vxArray* value) { return AlphaMap(value); }
  vxArray* toArray() const;

  const std::vector<double>& values() const noexcept { return values_; }

  friend bool operator==(const AlphaMap& a, const AlphaMap& b) noexcept { return a.values_ == b.values_; }

 private:
  std::vector<double> values_;
};

}  // namespace graphics::datatype
