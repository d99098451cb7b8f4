// A drawnow over 100,000 lines of which 1,000 changed since the last one:
// the view is told the changed names of those 1,000 only, so the time
// follows what changed, not the size of the tree.
#include <benchmark/benchmark.h>

#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgclasses/ViewUpdates.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

struct CountingView : sgclasses::ViewUpdateListener {
  std::size_t names = 0;
  void viewPropertiesChanged(COSInterface*, const std::vector<std::string>& changed,
                             const sgutils::UpdateViewInfo&) override {
    names += changed.size();
  }
};

void BM_DrawnowCollectsDirtySets(benchmark::State& state) {
  constexpr std::size_t kLines = 100000, kChanged = 1000;
  sgclasses::registerClasses();
  COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
  COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
  std::vector<COSInterfacePtr> lines;
  lines.reserve(kLines);
  for (std::size_t i = 0; i < kLines; ++i) lines.push_back(sgclasses::create(sgclasses::kLineClass, axes));
  sgclasses::drawnow();
  CountingView view;
  sgclasses::ScopedViewRegistration registration(view);
  std::vector<matrix::unique_vxArray> changed;
  for (std::size_t i = 0; i < kChanged; ++i)
    changed.emplace_back(omCreateVCOSScalar(lines[i * (kLines / kChanged)]));
  matrix::unique_vxArray values[2] = {matrix::unique_vxArray(vxCreateDoubleScalar(1)),
                                      matrix::unique_vxArray(vxCreateDoubleScalar(2))};
  int turn = 0;
  for (auto _ : state) {
    state.PauseTiming();
    turn ^= 1;
    for (const matrix::unique_vxArray& line : changed) vxSetProperty(line.get(), 0, "LineWidth", values[turn].get());
    state.ResumeTiming();
    benchmark::DoNotOptimize(sgclasses::drawnow());
  }
  state.counters["names"] = static_cast<double>(view.names) / static_cast<double>(state.iterations());
  changed.clear();
  lines.clear();
  sgclasses::releaseRoot();
}
BENCHMARK(BM_DrawnowCollectsDirtySets)->Unit(benchmark::kMicrosecond);

}  // namespace
