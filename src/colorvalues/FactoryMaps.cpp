// The default colormap and alpha map. The colormap runs from blue-violet
// through blue, teal and green to yellow, rising in lightness so that
// values read in order; it is interpolated between fixed colours and kept
// to four decimals, as a table of 256 rows stored column by column.
#include <array>
#include <cmath>

#include "sgutils/colorvalues/ColorValues.h"

namespace sgutils::colorvalues {

namespace {

constexpr std::size_t kColormapRows = 256;
constexpr std::size_t kAlphaValues = 64;

double fourDecimals(double x) { return std::round(x * 10000) / 10000; }

// The fixed colours, evenly spaced from the first row to the last.
constexpr std::array<std::array<double, 3>, 9> kStops = {{
    {0.2422, 0.1504, 0.6603},
    {0.2780, 0.3000, 0.9200},
    {0.1700, 0.4700, 0.9500},
    {0.0700, 0.6000, 0.8600},
    {0.0800, 0.7000, 0.7300},
    {0.3000, 0.7600, 0.5400},
    {0.6400, 0.7600, 0.3300},
    {0.9300, 0.7300, 0.2400},
    {0.9769, 0.9839, 0.0805},
}};

const std::vector<double>& colormapTable() {
  static const std::vector<double> table = [] {
    std::vector<double> t(3 * kColormapRows);
    constexpr double spans = kStops.size() - 1;
    for (std::size_t row = 0; row < kColormapRows; ++row) {
      const double at = spans * static_cast<double>(row) / (kColormapRows - 1);
      const std::size_t lo = std::min(static_cast<std::size_t>(at), kStops.size() - 2);
      const double f = at - static_cast<double>(lo);
      for (std::size_t c = 0; c < 3; ++c)
        t[row + c * kColormapRows] = fourDecimals(kStops[lo][c] + f * (kStops[lo + 1][c] - kStops[lo][c]));
    }
    return t;
  }();
  return table;
}

const std::vector<double>& alphaTable() {
  static const std::vector<double> table = [] {
    std::vector<double> t(kAlphaValues);
    for (std::size_t i = 0; i < kAlphaValues; ++i) t[i] = fourDecimals(static_cast<double>(i) / (kAlphaValues - 1));
    return t;
  }();
  return table;
}

}  // namespace

graphics::datatype::ColorMap factoryColorMap() { return graphics::datatype::ColorMap(colormapTable()); }

graphics::datatype::AlphaMap factoryAlphaMap() { return graphics::datatype::AlphaMap(alphaTable()); }

}  // namespace sgutils::colorvalues
