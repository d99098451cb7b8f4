// What a view drew for each line, patch and text of its figure: a Cairo
// recording of the object's own drawing, kept with the axes frame and scale
// it was drawn for. A recording stays good until the object is told changed
// or its frame or the scale differ; one export replays the good ones and
// redraws the rest. Not installed.
#pragma once

#include <cstddef>
#include <unordered_map>

#include "AxesFrame.h"
#include "CairoHandles.h"

class COSInterface;

namespace sgrender {

class DrawnObjects {
 public:
  // Starts an export at `scale`: a different scale forgets everything.
  void beginPass(double scale);
  // Ends it: recordings of objects the export did not reach (deleted,
  // moved away, hidden) are dropped, so no stale address is kept.
  void endPass();
  // The object's recording if it was drawn for `frame` and not changed
  // since; null otherwise. Marks the object reached either way.
  // An object's drawing: its recording, and for heavy objects bound for a
  // raster picture also its pixels, `image` placed at (x, y).
  // `ink` is the device rectangle the recording covers (x, y, w, h).
  struct Drawing {
    cairo_surface_t* recording = nullptr;
    cairo_surface_t* image = nullptr;
    int x = 0, y = 0;
    cairo_rectangle_int_t ink{};
  };
  Drawing find(const COSInterface* object, const AxesFrame& frame);
  Drawing store(const COSInterface* object, const AxesFrame& frame, Surface recording);
  // Keeps the pixels of a stored object's drawing.
  void storeImage(const COSInterface* object, Surface image, int x, int y);
  void forget(const COSInterface* object) { entries_.erase(object); }
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    AxesFrame frame;
    Surface recording;
    Surface image;
    int x = 0, y = 0;
    cairo_rectangle_int_t ink{};
    unsigned pass = 0;
  };
  std::unordered_map<const COSInterface*, Entry> entries_;
  double scale_ = 0;
  unsigned pass_ = 0;
};

}  // namespace sgrender
