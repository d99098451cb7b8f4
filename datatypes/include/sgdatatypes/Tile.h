// The place of a chart in a tiled layout: a tile number counted row by row
// from 1, or a [row column] pair counted from 1. Both are whole positive
// numbers.
#pragma once

#include <cstdint>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API Tile {
 public:
  // Tile number 1, the value of a new layout option.
  constexpr Tile() noexcept = default;
  static Tile initialTile() noexcept { return Tile(); }
  // Raises "VANTEL:datatypes:InvalidTile" for a number below 1.
  static Tile number(double index);
  static Tile rowColumn(double row, double column);

  static Tile fromArray(const vxArray* value);
  vxArray* toArray() const;

  bool isRowColumn() const noexcept { return column_ != 0; }
  // The tile number; 0 for a [row column] tile.
  std::uint32_t index() const noexcept { return column_ ? 0 : first_; }
  std::uint32_t row() const noexcept { return column_ ? first_ : 0; }
  std::uint32_t column() const noexcept { return column_; }

  friend bool operator==(const Tile& a, const Tile& b) noexcept {
    return a.first_ == b.first_ && a.column_ == b.column_;
  }

 private:
  std::uint32_t first_ = 1;   // tile number, or row
  std::uint32_t column_ = 0;  // 0 for a tile number
};

}  // namespace graphics::datatype
