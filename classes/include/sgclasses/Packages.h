// The packages of the concrete graphics classes, made on first use.
#pragma once

#include "sgdatatypes/Registration.h"

namespace sgclasses {

inline COSPackage* uiPackage() {
  static COSPackage* package = graphics::datatype::register_namespace(
      "vantel.ui", [] { return "Figures and the root"; }, [] { return "User-interface containers"; });
  return package;
}
inline COSPackage* containerPackage() {
  static COSPackage* package = graphics::datatype::register_namespace(
      "vantel.ui.container", [] { return "Containers"; }, [] { return "Menus and other containers"; });
  return package;
}
inline COSPackage* axisPackage() {
  static COSPackage* package = graphics::datatype::register_namespace(
      "vantel.graphics.axis", [] { return "Axes"; }, [] { return "Coordinate systems of plots"; });
  return package;
}
inline COSPackage* primitivePackage() {
  static COSPackage* package = graphics::datatype::register_namespace(
      "vantel.graphics.primitive", [] { return "Primitives"; }, [] { return "Lines, text, patches and groups"; });
  return package;
}

}  // namespace sgclasses
