#include "DrawnObjects.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace sgrender {

void DrawnObjects::beginPass(double scale) {
  if (scale != scale_) {
    entries_.clear();
    runs_.clear();
  }
  scale_ = scale;
  ++pass_;
}

void DrawnObjects::endPass() {
  for (auto it = entries_.begin(); it != entries_.end();)
    it = it->second.pass == pass_ ? std::next(it) : entries_.erase(it);
  for (auto it = runs_.begin(); it != runs_.end();) it = it->second.pass == pass_ ? std::next(it) : runs_.erase(it);
}

std::vector<DrawnObjects::Run>& DrawnObjects::runsOf(const COSInterface* axes, const AxesFrame& frame) {
  AxesRuns& r = runs_[axes];
  if (!(r.frame == frame)) {
    r.runs.clear();
    r.frame = frame;
  }
  r.pass = pass_;
  return r.runs;
}

DrawnObjects::Drawing DrawnObjects::find(const COSInterface* object, const AxesFrame& frame) {
  auto it = entries_.find(object);
  if (it == entries_.end()) return {};
  Entry& e = it->second;
  e.pass = pass_;
  if (!(e.frame == frame)) return {};
  return {e.recording.get(), e.ink};
}

DrawnObjects::Drawing DrawnObjects::store(const COSInterface* object, const AxesFrame& frame, Surface recording) {
  Entry& e = entries_[object];
  e.frame = frame;
  e.recording = std::move(recording);
  e.pass = pass_;
  double x, y, w, h;
  cairo_recording_surface_ink_extents(e.recording.get(), &x, &y, &w, &h);
  const int x0 = int(std::floor(x)), y0 = int(std::floor(y));
  e.ink = {x0, y0, std::max(0, int(std::ceil(x + w)) - x0), std::max(0, int(std::ceil(y + h)) - y0)};
  return {e.recording.get(), e.ink};
}


}  // namespace sgrender
