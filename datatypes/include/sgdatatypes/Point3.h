// A point in three dimensions, x, y and z: finite real numbers given as a
// vector of three elements and read back as a 1-by-3 row.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API Point3 {
 public:
  constexpr Point3() noexcept = default;
  // Raises "VANTEL:datatypes:InvalidPoint3" for a coordinate that is not finite.
  Point3(double x, double y, double z);

  static Point3 fromArray(const vxArray* value);
  vxArray* toArray() const;

  double x() const noexcept { return xyz_[0]; }
  double y() const noexcept { return xyz_[1]; }
  double z() const noexcept { return xyz_[2]; }

  friend bool operator==(const Point3& a, const Point3& b) noexcept {
    return a.xyz_[0] == b.xyz_[0] && a.xyz_[1] == b.xyz_[1] && a.xyz_[2] == b.xyz_[2];
  }

 private:
  double xyz_[3] = {0.0, 0.0, 0.0};
};

}  // namespace graphics::datatype
