#include "sgrender/FigureView.h"

#include <utility>

#include "DrawnObjects.h"
#include "PictureWriter.h"
#include "sgclasses/Drawnow.h"

namespace sgrender {

FigureView::FigureView(COSInterfacePtr figure)
    : figure_(std::move(figure)), drawn_(std::make_unique<DrawnObjects>()), registration_(*this) {}

FigureView::~FigureView() = default;

RenderStats FigureView::exportTo(const std::string& path, double scale) {
  sgclasses::drawnow();
  last_ = writePicture(figure_, path, scale, drawn_.get());
  return last_;
}

std::size_t FigureView::keptObjects() const { return drawn_->size(); }

void FigureView::viewPropertiesChanged(COSInterface* object, const std::vector<std::string>&,
                                       const sgutils::UpdateViewInfo&) {
  // Any change of the object's own properties makes its drawing stale;
  // changes above it (limits, position, scale) show in the frame instead.
  drawn_->forget(object);
}

}  // namespace sgrender
