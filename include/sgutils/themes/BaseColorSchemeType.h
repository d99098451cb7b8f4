// The base colour style of a theme: light (0, the default), dark (1), or
// white (2). White is accepted but not offered among the possible values; it
// resolves colours as light does. The value is one byte, so that the word of
// the data type ("vantel.graphics.primitive.datatype.BaseColorSchemeType")
// can point at it as at any enumeration byte.
#pragma once

#include "sgutils/SgutilsExport.h"

namespace graphics::datatype {
struct EnumerationDescription;
}

namespace sgutils {

class BaseColorSchemeType {
 public:
  enum Scheme : unsigned char { Light = 0, Dark = 1, White = 2 };

  constexpr BaseColorSchemeType() noexcept = default;
  constexpr BaseColorSchemeType(Scheme v) noexcept : value_(v) {}

  constexpr Scheme Value() const noexcept { return value_; }
  constexpr int getIntValue() const noexcept { return value_; }
  constexpr bool isLight() const noexcept { return value_ == Light; }
  constexpr bool isDark() const noexcept { return value_ == Dark; }
  constexpr bool isWhite() const noexcept { return value_ == White; }
  friend constexpr bool operator==(BaseColorSchemeType a, BaseColorSchemeType b) noexcept {
    return a.value_ == b.value_;
  }

  // The full name of the data type.
  static constexpr const char kTypeName[] = "vantel.graphics.primitive.datatype.BaseColorSchemeType";
  // The texts in value order, white hidden from the listed values.
  SGUTILS_API static const graphics::datatype::EnumerationDescription& description() noexcept;

 private:
  Scheme value_ = Light;
};

static_assert(sizeof(BaseColorSchemeType) == 1, "the data type's word points at the value as at a byte");

// Registers the data type with its conversions from and to "any" (once).
SGUTILS_API void registerBaseColorSchemeType();

}  // namespace sgutils
