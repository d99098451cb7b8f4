// What a view drew for each line, patch and text of its figure: a Cairo
// recording of the object's own drawing, kept with the axes frame and scale
// it was drawn for. A recording stays good until the object is told changed
// or its frame or the scale differ; one export replays the good ones and
// redraws the rest. Not installed.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "CairoHandles.h"
#include "sgclasses/AxesFrame.h"

class COSInterface;

namespace sgrender {

using sgclasses::AxesFrame;

class DrawnObjects {
 public:
  // Starts an export at `scale`: a different scale forgets everything.
  void beginPass(double scale);
  // Ends it: recordings of objects the export did not reach (deleted,
  // moved away, hidden) are dropped, so no stale address is kept.
  void endPass();
  // The object's recording if it was drawn for `frame` and not changed
  // since; null otherwise. Marks the object reached either way.
  // An object's drawing: its recording, and the device rectangle it covers.
  struct Drawing {
    cairo_surface_t* recording = nullptr;
    cairo_rectangle_int_t ink{};
  };
  Drawing find(const COSInterface* object, const AxesFrame& frame);
  Drawing store(const COSInterface* object, const AxesFrame& frame, Surface recording);
  void forget(const COSInterface* object) { entries_.erase(object); }

  // For raster pictures an axes' objects, in drawing order, are kept in
  // runs that each hold the pixels of their members over the axes' box.
  struct Run {
    std::vector<const COSInterface*> members;
    Surface image;
  };
  // The runs of `axes` as last kept for `frame`; emptied when the frame
  // differs. Marks the axes reached.
  std::vector<Run>& runsOf(const COSInterface* axes, const AxesFrame& frame);
  std::size_t size() const { return entries_.size(); }

 private:
  struct Entry {
    AxesFrame frame;
    Surface recording;
    cairo_rectangle_int_t ink{};
    unsigned pass = 0;
  };
  struct AxesRuns {
    AxesFrame frame;
    std::vector<Run> runs;
    unsigned pass = 0;
  };
  std::unordered_map<const COSInterface*, Entry> entries_;
  std::unordered_map<const COSInterface*, AxesRuns> runs_;
  double scale_ = 0;
  unsigned pass_ = 0;
};

}  // namespace sgrender
