// The small numeric value types: AlphaMap, ZeroToOne, Point3, Position, Tile,
// TiledGridSize, and the text value TypeName. Each checks what a user gave and
// converts back to the row a user reads.
#include <cmath>
#include <limits>

#include "ArrayValues.h"
#include "foundation/core/except/Error.h"
#include "foundation/i18n/Message.h"
#include "sgdatatypes/AlphaMap.h"
#include "sgdatatypes/Point3.h"
#include "sgdatatypes/Position.h"
#include "sgdatatypes/Tile.h"
#include "sgdatatypes/TiledGridSize.h"
#include "sgdatatypes/TypeName.h"
#include "sgdatatypes/ZeroToOne.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype {
namespace {

bool unit(double x) noexcept { return x >= 0.0 && x <= 1.0; }

// A real numeric vector of exactly `n` elements copied into `out`; false
// otherwise.
bool readVector(const vxArray* a, vxSize n, double* out) noexcept {
  if (!detail::isRealNumeric(a) || !vxIsVector(a) || vxGetNumberOfElements(a) != n) return false;
  for (vxSize i = 0; i < n; ++i) out[i] = detail::numberAt(a, i);
  return true;
}

std::string pairText(double a, double b) {
  return "[" + i18n::Message::argumentText(a) + " " + i18n::Message::argumentText(b) + "]";
}

bool positiveWhole(double x) noexcept {
  return x >= 1.0 && x <= std::numeric_limits<std::uint32_t>::max() && std::floor(x) == x;
}

}  // namespace

// AlphaMap

AlphaMap::AlphaMap(const vxArray* value) {
  if (!detail::isRealNumeric(value) || !vxIsVector(value))
    throw Error("VANTEL:datatypes:InvalidAlphaMap", detail::describe(value));
  const vxSize n = vxGetNumberOfElements(value);
  values_.resize(n);
  for (vxSize i = 0; i < n; ++i) {
    values_[i] = detail::numberAt(value, i);
    if (!unit(values_[i])) throw Error("VANTEL:datatypes:InvalidAlphaMap", detail::describe(value));
  }
}

AlphaMap::AlphaMap(std::vector<double> values) : values_(std::move(values)) {
  bool ok = !values_.empty();
  for (double x : values_) ok = ok && unit(x);
  if (!ok) throw Error("VANTEL:datatypes:InvalidAlphaMap", std::to_string(values_.size()) + " values");
}

vxArray* AlphaMap::toArray() const { return detail::doubleRow(values_.data(), values_.size()); }

// ZeroToOne

ZeroToOne::ZeroToOne(double value) : value_(value) {
  if (!unit(value)) throw Error("VANTEL:datatypes:InvalidZeroToOne", value);
}

ZeroToOne ZeroToOne::fromArray(const vxArray* value) {
  if (!detail::isRealNumeric(value) || !vxIsScalar(value))
    throw Error("VANTEL:datatypes:InvalidZeroToOne", detail::describe(value));
  return ZeroToOne(detail::numberAt(value, 0));
}

vxArray* ZeroToOne::toArray() const { return vxCreateDoubleScalar(value_); }

// Point3

Point3::Point3(double x, double y, double z) : xyz_{x, y, z} {
  if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
    throw Error("VANTEL:datatypes:InvalidPoint3", "a coordinate that is not finite");
}

Point3 Point3::fromArray(const vxArray* value) {
  double v[3];
  if (!readVector(value, 3, v)) throw Error("VANTEL:datatypes:InvalidPoint3", detail::describe(value));
  return Point3(v[0], v[1], v[2]);
}

vxArray* Point3::toArray() const { return detail::doubleRow(xyz_, 3); }

// Position

Position::Position(double left, double bottom, double width, double height) : v_{left, bottom, width, height} {
  for (double x : v_)
    if (!std::isfinite(x)) throw Error("VANTEL:datatypes:InvalidPosition", "a value that is not finite");
  if (width < 0.0 || height < 0.0) throw Error("VANTEL:datatypes:InvalidPosition", "a negative width or height");
}

Position Position::fromArray(const vxArray* value) {
  double v[4];
  if (!readVector(value, 4, v)) throw Error("VANTEL:datatypes:InvalidPosition", detail::describe(value));
  return Position(v[0], v[1], v[2], v[3]);
}

vxArray* Position::toArray() const { return detail::doubleRow(v_, 4); }

// Tile

Tile Tile::number(double index) {
  if (!positiveWhole(index)) throw Error("VANTEL:datatypes:InvalidTile", index);
  Tile t;
  t.first_ = static_cast<std::uint32_t>(index);
  return t;
}

Tile Tile::rowColumn(double row, double column) {
  if (!positiveWhole(row) || !positiveWhole(column))
    throw Error("VANTEL:datatypes:InvalidTile", pairText(row, column));
  Tile t;
  t.first_ = static_cast<std::uint32_t>(row);
  t.column_ = static_cast<std::uint32_t>(column);
  return t;
}

Tile Tile::fromArray(const vxArray* value) {
  double v[2];
  if (readVector(value, 1, v)) return number(v[0]);
  if (readVector(value, 2, v)) return rowColumn(v[0], v[1]);
  throw Error("VANTEL:datatypes:InvalidTile", detail::describe(value));
}

vxArray* Tile::toArray() const {
  if (!column_) return vxCreateDoubleScalar(first_);
  const double rc[2] = {static_cast<double>(first_), static_cast<double>(column_)};
  return detail::doubleRow(rc, 2);
}

// TiledGridSize

TiledGridSize::TiledGridSize(double rows, double columns) {
  if (!positiveWhole(rows) || !positiveWhole(columns))
    throw Error("VANTEL:datatypes:InvalidTiledGridSize",
                pairText(rows, columns));
  rows_ = static_cast<std::uint32_t>(rows);
  columns_ = static_cast<std::uint32_t>(columns);
}

TiledGridSize TiledGridSize::fromArray(const vxArray* value) {
  double v[2];
  if (!readVector(value, 2, v)) throw Error("VANTEL:datatypes:InvalidTiledGridSize", detail::describe(value));
  return TiledGridSize(v[0], v[1]);
}

vxArray* TiledGridSize::toArray() const {
  const double rc[2] = {static_cast<double>(rows_), static_cast<double>(columns_)};
  return detail::doubleRow(rc, 2);
}

// TypeName

TypeName TypeName::fromArray(const vxArray* value) {
  if (!detail::isText(value)) throw Error("VANTEL:datatypes:InvalidTypeName", detail::describe(value));
  return TypeName(detail::textOf(value));
}

vxArray* TypeName::toArray() const { return detail::charRow(name_); }

}  // namespace graphics::datatype
