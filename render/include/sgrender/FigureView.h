// A figure's picture kept as a view: it is told by drawnow which properties
// of which objects changed, and each export redraws only those objects
// (and those whose axes moved or rescaled), replaying the rest as drawn.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sgclasses/ViewUpdates.h"
#include "sgrender/RenderStats.h"
#include "sgrender/SgrenderExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgrender {

class DrawnObjects;

class SGRENDER_API FigureView final : public sgclasses::ViewUpdateListener {
 public:
  // Registered with the views for its own lifetime. Holds the figure.
  explicit FigureView(COSInterfacePtr figure);
  ~FigureView() override;
  FigureView(const FigureView&) = delete;
  FigureView& operator=(const FigureView&) = delete;

  // Brings every view up to date (drawnow), then writes the figure as
  // FigureRenderer::exportFigure does, with the same checks and errors.
  RenderStats exportTo(const std::string& path, double scale = 1.0);

  const COSInterfacePtr& figure() const { return figure_; }
  // The number of objects whose drawing is kept.
  std::size_t keptObjects() const;
  // What the last export that wrote a picture drew and replayed.
  const RenderStats& lastStats() const { return last_; }

  void viewPropertiesChanged(COSInterface* object, const std::vector<std::string>& names,
                             const sgutils::UpdateViewInfo& info) override;

 private:
  COSInterfacePtr figure_;
  std::unique_ptr<DrawnObjects> drawn_;
  RenderStats last_;
  sgclasses::ScopedViewRegistration registration_;
};

}  // namespace sgrender
