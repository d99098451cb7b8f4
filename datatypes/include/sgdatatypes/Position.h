// Where an object sits and how large it is: [left bottom width height], four
// finite real numbers with a width and height that are not negative.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API Position {
 public:
  // [0 0 1 1].
  constexpr Position() noexcept = default;
  // Raises "VANTEL:datatypes:InvalidPosition".
  Position(double left, double bottom, double width, double height);

  static Position fromArray(const vxArray* value);
  vxArray* toArray() const;

  double left() const noexcept { return v_[0]; }
  double bottom() const noexcept { return v_[1]; }
  double width() const noexcept { return v_[2]; }
  double height() const noexcept { return v_[3]; }

  friend bool operator==(const Position& a, const Position& b) noexcept {
    return a.v_[0] == b.v_[0] && a.v_[1] == b.v_[1] && a.v_[2] == b.v_[2] && a.v_[3] == b.v_[3];
  }

 private:
  double v_[4] = {0.0, 0.0, 1.0, 1.0};
};

}  // namespace graphics::datatype
