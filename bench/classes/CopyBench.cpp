// copyobj of the concrete classes: an axes with 1,000 lines into another
// figure, and a figure of 100,000 objects (100 groups of 1,000 lines). The
// copy is deleted outside the timed region.
#include <benchmark/benchmark.h>

#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgutils/copy/CopyContext.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"

namespace {

void copyRepeatedly(benchmark::State& state, const COSInterfacePtr& source, const COSInterfacePtr& parent,
                    std::size_t objects) {
  const std::vector<COSInterfacePtr> sources{source}, parents{parent};
  for (auto _ : state) {
    matrix::unique_vxArray made(sgutils::CopyContext::doCopyObjects(sources, parents, false));
    state.PauseTiming();
    omGetArrayElement(made.get(), 0)->deleteObject(COSGetPublicClient());
    made.reset();
    state.ResumeTiming();
  }
  state.counters["objects"] = static_cast<double>(objects);
}

void BM_CopyAxesWith1000Lines(benchmark::State& state) {
  sgclasses::registerClasses();
  {
    const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
    for (int i = 0; i < 1000; ++i) sgclasses::create(sgclasses::kLineClass, axes);
    const COSInterfacePtr target = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    copyRepeatedly(state, axes, target, 1001);
  }
  sgclasses::releaseRoot();
}
BENCHMARK(BM_CopyAxesWith1000Lines)->Unit(benchmark::kMillisecond);

void BM_CopyTreeOf100000Objects(benchmark::State& state) {
  sgclasses::registerClasses();
  {
    const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
    for (int g = 0; g < 100; ++g) {
      const COSInterfacePtr group = sgclasses::create(sgclasses::kGroupClass, axes);
      for (int i = 0; i < 1000; ++i) sgclasses::create(sgclasses::kLineClass, group);
    }
    copyRepeatedly(state, figure, sgclasses::root(), 100102);
  }
  sgclasses::releaseRoot();
}
BENCHMARK(BM_CopyTreeOf100000Objects)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
