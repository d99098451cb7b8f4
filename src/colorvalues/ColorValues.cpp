// The named colour orders, and colour orders made from hexadecimal strings.
#include "sgutils/colorvalues/ColorValues.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/RGBAColor.h"

namespace sgutils::colorvalues {

namespace {

using graphics::datatype::ColorOrder;
using Hex = std::vector<std::string>;

const Hex& gem() {
  static const Hex rows = {"#0072BD", "#D95319", "#EDB120", "#7E2F8E", "#77AC30", "#4DBEEE", "#A2142F"};
  return rows;
}
const Hex& glow() {
  static const Hex rows = {"#268CDD", "#F57729", "#FFE864", "#C05CFB", "#49DB40", "#6CF4FF", "#F267C5"};
  return rows;
}
Hex extended(const Hex& seven, std::initializer_list<const char*> five) {
  Hex rows = seven;
  rows.insert(rows.end(), five.begin(), five.end());
  return rows;
}
const Hex& gem12() {
  static const Hex rows = extended(gem(), {"#ffd60a", "#6582fd", "#ff453a", "#00a3a3", "#cb845d"});
  return rows;
}
const Hex& glow12() {
  static const Hex rows = extended(glow(), {"#fec04c", "#7da9ff", "#ff7a74", "#1fcfbe", "#dc996c"});
  return rows;
}

struct Named {
  std::string_view name;
  Hex rows;
};
// The orders of the second table, in the order they are compared.
const std::vector<Named>& moreOrders() {
  static const std::vector<Named> orders = {
      {"sail", {"#104280", "#54B6FF", "#FF453A", "#902622", "#1171BE"}},
      {"meadow", {"#02580E", "#3AC831", "#FFD60A", "#F57729", "#C04C0B", "#FA8AD4", "#7DA9FF"}},
      {"reef", {"#DD5400", "#54B6FF", "#1171BE", "#FE9043", "#74EBDA", "#00A3A3"}},
      {"dye", {"#B7312C", "#3BAA32", "#5E2296", "#1171BE", "#DD5400", "#027880", "#E951B8"}},
      {"earth", {"#104280", "#B7312C", "#9C7720", "#02580E", "#DC996C", "#5F1B08", "#FFD19E"}},
  };
  return orders;
}

}  // namespace

ColorOrder colorOrderFromHexArray(const std::vector<std::string>& colors, bool truncate) {
  const std::size_t n = colors.size();
  std::vector<double> flat(3 * n);
  for (std::size_t i = 0; i < n; ++i) {
    const graphics::datatype::RGBAColor c(colors[i]);
    flat[i] = c.red();
    flat[i + n] = c.green();
    flat[i + 2 * n] = c.blue();
  }
  if (truncate)
    for (double& x : flat) x = std::floor(x * 1000) / 1000;
  return ColorOrder(std::move(flat));
}

ColorOrder factoryColorOrder(bool isLight) { return colorOrderFromHexArray(isLight ? gem() : glow(), true); }

ColorOrder extendedColorOrder(bool isLight) { return colorOrderFromHexArray(isLight ? gem12() : glow12(), true); }

ColorOrder getNamedColorOrder(std::string name) {
  const std::string given = name;
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (name == "gem") return factoryColorOrder(true);
  if (name == "gem12") return extendedColorOrder(true);
  if (name == "glow") return factoryColorOrder(false);
  if (name == "glow12") return extendedColorOrder(false);
  for (const Named& order : moreOrders())
    if (name == order.name) return colorOrderFromHexArray(order.rows, true);
  throw foundation::core::except::Error("VANTEL:graphics:colororder:ValidNamedColorOrders", given);
}

}  // namespace sgutils::colorvalues
