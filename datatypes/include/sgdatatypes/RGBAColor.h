// A colour with alpha, or the colour "none". Users give colours as numeric
// triples or quadruples in [0, 1], as names ("red") or their one-letter forms
// ("r"), as "#RRGGBB" or "#RGB", or as "none"; they read one back as a 1-by-3
// row (1-by-4 when the alpha is not 1) or as the text "none".
#pragma once

#include <string>
#include <string_view>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API RGBAColor {
 public:
  // Opaque black.
  constexpr RGBAColor() noexcept = default;
  // Raises "VANTEL:datatypes:InvalidColor" for a component outside [0, 1].
  RGBAColor(double red, double green, double blue, double alpha = 1.0);
  // Parses a name, a one-letter name, "#RRGGBB", "#RGB" or "none"; raises
  // "VANTEL:datatypes:InvalidColorText" for anything else.
  explicit RGBAColor(std::string_view text);
  explicit RGBAColor(const std::string& text) : RGBAColor(std::string_view(text)) {}
  explicit RGBAColor(const char* text) : RGBAColor(std::string_view(text)) {}

  static RGBAColor none() noexcept;
  // From what a user typed; raises "VANTEL:datatypes:InvalidColor" or
  // "VANTEL:datatypes:InvalidColorText".
  static RGBAColor fromArray(const vxArray* value);
  // What a user reads back; owned by the caller.
  vxArray* toArray() const;

  double red() const noexcept { return rgba_[0]; }
  double green() const noexcept { return rgba_[1]; }
  double blue() const noexcept { return rgba_[2]; }
  double alpha() const noexcept { return rgba_[3]; }
  bool isNone() const noexcept { return none_; }

  friend bool operator==(const RGBAColor& a, const RGBAColor& b) noexcept {
    if (a.none_ || b.none_) return a.none_ == b.none_;
    return a.rgba_[0] == b.rgba_[0] && a.rgba_[1] == b.rgba_[1] && a.rgba_[2] == b.rgba_[2] &&
           a.rgba_[3] == b.rgba_[3];
  }

 private:
  double rgba_[4] = {0.0, 0.0, 0.0, 1.0};
  bool none_ = false;
};

}  // namespace graphics::datatype
