#include "sgrender/FigureViews.h"

#include <memory>
#include <unordered_map>
#include <utility>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgrender/FigureRenderer.h"
#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"

namespace sgrender {
namespace {

// Which figure has which view; the views themselves are owned by their
// figures (see ViewHolder), so nothing here outlives a figure or needs
// tearing down at exit.
std::unordered_map<const COSInterface*, FigureView*>& index() {
  static std::unordered_map<const COSInterface*, FigureView*> map;
  return map;
}

// Owns a figure's view. The figure holds it through its
// "ObjectBeingDestroyed" listener: the event drops the view at once, and
// should the listener go without the event, the holder's end drops it.
class ViewHolder {
 public:
  explicit ViewHolder(const COSInterfacePtr& figure)
      // A weak reference: the figure holds the view, so the view must not
      // keep the figure alive.
      : key_(figure.get()), view_(std::make_unique<FigureView>(COSInterfacePtr(figure.get(), COSWeakReference))) {
    index()[key_] = view_.get();
  }
  ~ViewHolder() { drop(); }
  ViewHolder(const ViewHolder&) = delete;
  ViewHolder& operator=(const ViewHolder&) = delete;

  FigureView& view() { return *view_; }
  void drop() {
    if (!view_) return;
    index().erase(key_);
    view_.reset();
  }

 private:
  const COSInterface* key_;
  std::unique_ptr<FigureView> view_;
};

FigureView& makeView(const COSInterfacePtr& figure) {
  auto holder = std::make_shared<ViewHolder>(figure);
  FigureView& view = holder->view();
  static const COSID beingDestroyed("ObjectBeingDestroyed");
  COSInterfacePtr listener = COSListener::createListener(
      COSListenerOp::fromFunction([holder](COSInterface*, COSEventData*) { holder->drop(); }));
  figure->addListener(beingDestroyed, COSListener::toListener(listener));
  return view;
}

}  // namespace

RenderStats FigureViews::exportFigure(const COSInterfacePtr& figure, const std::string& path, double scale) {
  if (figure && figure->isBeingDestroyed()) throw foundation::core::except::Error("VANTEL:sg:DeletedObject");
  if (!figure || figure->isDestroyed() || !sgclasses::isOfClass(figure.get(), {sgclasses::kFigureClass}))
    return FigureRenderer::exportFigure(figure, path, scale);  // raises the error of such an object
  FigureView* view = find(figure.get());
  return (view ? *view : makeView(figure)).exportTo(path, scale);
}

FigureView* FigureViews::find(const COSInterface* figure) {
  const auto it = index().find(figure);
  return it == index().end() ? nullptr : it->second;
}

std::size_t FigureViews::count() { return index().size(); }

}  // namespace sgrender
