// Colours as the text of a 1-by-3 row, to compare what an object holds with
// what the colour service gives a theme variable.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "ClassesTestSupport.h"
#include "foundation/uithemes/ThemeColors.h"
#include "sgdatatypes/RGBAColor.h"

namespace sgtest::classes {

// The colour the colour service gives a variable in a style.
inline std::string serviceRow(const std::string& variable, const char* style) {
  const graphics::datatype::RGBAColor c(*uithemes::utils::getColor(variable, style));
  return std::to_string(c.red()) + " " + std::to_string(c.green()) + " " + std::to_string(c.blue());
}

// The object's colour property as a get reads it.
inline std::string row(const COSInterfacePtr& object, const char* name) {
  Arr a = get(object, name);
  const double* p = vxGetPr(a.get());
  EXPECT_EQ(vxGetNumberOfElements(a.get()), 3u) << name;
  return std::to_string(p[0]) + " " + std::to_string(p[1]) + " " + std::to_string(p[2]);
}

}  // namespace sgtest::classes
