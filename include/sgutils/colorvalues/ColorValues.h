// The factory colour data of the graphics system: the named colour orders,
// the default colormap and the default alpha map. Every call gives a new
// value; the tables behind them are made once, on first use.
#pragma once

#include <string>
#include <vector>

#include "sgdatatypes/AlphaMap.h"
#include "sgdatatypes/ColorMap.h"
#include "sgdatatypes/ColorOrder.h"
#include "sgutils/SgutilsExport.h"

namespace sgutils::colorvalues {

// "gem" for a light theme, "glow" for a dark one (7 colours each).
SGUTILS_API graphics::datatype::ColorOrder factoryColorOrder(bool isLight);
// "gem12" or "glow12": the seven, then five more.
SGUTILS_API graphics::datatype::ColorOrder extendedColorOrder(bool isLight);
// 256 colours from blue-violet through teal and green to yellow.
SGUTILS_API graphics::datatype::ColorMap factoryColorMap();
// 64 values rising evenly from 0 to 1, as a row.
SGUTILS_API graphics::datatype::AlphaMap factoryAlphaMap();

// The colour order of a name, without regard to case: "gem", "gem12",
// "glow", "glow12", "sail", "meadow", "reef", "dye", "earth". Any other name
// raises "VANTEL:graphics:colororder:ValidNamedColorOrders".
SGUTILS_API graphics::datatype::ColorOrder getNamedColorOrder(std::string name);
// A colour order from "#RRGGBB" strings, one row each; `truncate` cuts each
// component to three decimals (0x72 / 255 gives 0.447).
SGUTILS_API graphics::datatype::ColorOrder colorOrderFromHexArray(const std::vector<std::string>& colors,
                                                                  bool truncate);

}  // namespace sgutils::colorvalues
