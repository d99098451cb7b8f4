// A number from 0 to 1, both included: transparencies and alphas.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API ZeroToOne {
 public:
  constexpr ZeroToOne() noexcept = default;
  // Raises "VANTEL:datatypes:InvalidZeroToOne" outside [0, 1] and for NaN.
  explicit ZeroToOne(double value);

  static ZeroToOne fromArray(const vxArray* value);
  vxArray* toArray() const;

  double value() const noexcept { return value_; }
  operator double() const noexcept { return value_; }

  friend bool operator==(ZeroToOne a, ZeroToOne b) noexcept { return a.value_ == b.value_; }

 private:
  double value_ = 0.0;
};

}  // namespace graphics::datatype
