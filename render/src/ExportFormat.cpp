#include "sgrender/ExportFormat.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "foundation/core/except/Error.h"

namespace sgrender {

ExportFormat exportFormatOf(std::string_view path) {
  const std::size_t slash = path.find_last_of('/');
  const std::size_t dot = path.find_last_of('.');
  std::string ext;
  if (dot != std::string_view::npos && (slash == std::string_view::npos || dot > slash)) ext = path.substr(dot + 1);
  std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return char(std::tolower(c)); });
  if (ext == "png") return ExportFormat::Png;
  if (ext == "svg") return ExportFormat::Svg;
  if (ext == "pdf") return ExportFormat::Pdf;
  throw foundation::core::except::Error("VANTEL:sgrender:UnknownFormat", std::string(path));
}

}  // namespace sgrender
