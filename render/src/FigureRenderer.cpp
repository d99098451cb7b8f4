#include "sgrender/FigureRenderer.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "CairoHandles.h"
#include "DrawnObjects.h"
#include "PictureWriter.h"
#include "Properties.h"
#include "TreePainter.h"
#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "vcos/COSInterface.h"

namespace sgrender {
namespace {

using foundation::core::except::Error;
namespace fs = std::filesystem;

// The file being written beside its final name: removed unless kept, so a
// failed export leaves nothing behind.
class PartialFile {
 public:
  explicit PartialFile(const fs::path& target) {
    static std::atomic<unsigned> counter{0};
    path_ = target;
    path_ += ".part-" + std::to_string(::getpid()) + "-" + std::to_string(counter++);
  }
  ~PartialFile() {
    std::error_code ec;
    if (!kept_) fs::remove(path_, ec);
  }
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;
  const fs::path& path() const { return path_; }
  void moveTo(const fs::path& target) {
    std::error_code ec;
    fs::rename(path_, target, ec);
    if (ec) throw Error("VANTEL:sgrender:CannotWrite", target.string());
    kept_ = true;
  }

 private:
  fs::path path_;
  bool kept_ = false;
};

}  // namespace

RenderStats FigureRenderer::exportFigure(const COSInterfacePtr& figure, const std::string& path, double scale) {
  return writePicture(figure, path, scale, nullptr);
}

RenderStats writePicture(const COSInterfacePtr& figure, const std::string& path, double scale, DrawnObjects* drawn) {
  const ExportFormat format = exportFormatOf(path);
  if (!figure || figure->isDestroyed()) throw Error("VANTEL:sg:DeletedObject");
  if (!sgclasses::isOfClass(figure.get(), {sgclasses::kFigureClass})) throw Error("VANTEL:sgrender:NotFigure");
  if (!(scale > 0) || scale > 20) throw Error("VANTEL:sgrender:BadScale");

  const fs::path target(path);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::error_code ec;
  if (!fs::is_directory(folder, ec)) throw Error("VANTEL:sgrender:FolderNotFound", folder.string());

  std::vector<double> pos = props::numbers(figure.get(), "Position");
  const double w = (pos.size() >= 4 && pos[2] >= 1 ? pos[2] : 560) * scale;
  const double h = (pos.size() >= 4 && pos[3] >= 1 ? pos[3] : 420) * scale;

  PartialFile part(target);
  Surface surface;
  switch (format) {
    case ExportFormat::Png: surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, int(w), int(h))); break;
    case ExportFormat::Svg: surface.reset(cairo_svg_surface_create(part.path().c_str(), w, h)); break;
    case ExportFormat::Pdf: surface.reset(cairo_pdf_surface_create(part.path().c_str(), w, h)); break;
  }
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw Error("VANTEL:sgrender:CannotWrite", path);

  // Kept drawings serve raster pictures only; a vector picture is drawn
  // whole and leaves them as they are.
  if (format != ExportFormat::Png) drawn = nullptr;
  RenderStats stats;
  {
    Context cr(cairo_create(surface.get()));
    TreePainter painter(cr.get(), std::floor(w), std::floor(h), scale, drawn);
    if (drawn) drawn->beginPass(scale);
    painter.paintFigure(figure.get());
    if (drawn) drawn->endPass();
    stats = painter.stats();
    if (cairo_status(cr.get()) != CAIRO_STATUS_SUCCESS) throw Error("VANTEL:sgrender:CannotWrite", path);
  }
  if (format == ExportFormat::Png) {
    if (cairo_surface_write_to_png(surface.get(), part.path().c_str()) != CAIRO_STATUS_SUCCESS)
      throw Error("VANTEL:sgrender:CannotWrite", path);
  } else {
    cairo_surface_finish(surface.get());
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw Error("VANTEL:sgrender:CannotWrite", path);
  }
  surface.reset();
  part.moveTo(target);
  return stats;
}

}  // namespace sgrender
