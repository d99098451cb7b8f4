// The picture formats a figure can be written in, chosen by file extension.
#pragma once

#include <string_view>

#include "sgrender/SgrenderExport.h"

namespace sgrender {

enum class ExportFormat { Png, Svg, Pdf };

// The format of a file name by its extension (.png, .svg, .pdf, any case);
// throws "VANTEL:sgrender:UnknownFormat" for any other.
SGRENDER_API ExportFormat exportFormatOf(std::string_view path);

}  // namespace sgrender
