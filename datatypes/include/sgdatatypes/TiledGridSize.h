// The size of a tiled layout grid, or of the span of one chart in it:
// [rows columns], two whole positive numbers.
#pragma once

#include <cstdint>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API TiledGridSize {
 public:
  // [1 1].
  constexpr TiledGridSize() noexcept = default;
  // Raises "VANTEL:datatypes:InvalidTiledGridSize".
  TiledGridSize(double rows, double columns);

  static TiledGridSize fromArray(const vxArray* value);
  vxArray* toArray() const;

  std::uint32_t rows() const noexcept { return rows_; }
  std::uint32_t columns() const noexcept { return columns_; }

  friend bool operator==(const TiledGridSize& a, const TiledGridSize& b) noexcept {
    return a.rows_ == b.rows_ && a.columns_ == b.columns_;
  }

 private:
  std::uint32_t rows_ = 1;
  std::uint32_t columns_ = 1;
};

}  // namespace graphics::datatype
