// copyobj of the concrete classes: an axes with 1,000 lines into another
// figure (plain lines, and lines with data, a colour, a width and a tag of
// their own), and a figure of 100,000 objects (100 groups of 1,000 lines).
// The copy is deleted outside the timed region.
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
#include "vx/vxCreate.h"
#include "vx/vxData.h"

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

// Lines as a plot makes them: each property set here differs from a new
// line's, so the copy writes it.
void BM_CopyAxesWith1000DataLines(benchmark::State& state) {
  sgclasses::registerClasses();
  {
    const COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    const COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
    std::vector<matrix::unique_vxArray> owned;
    auto text = [&](const char* s) { return owned.emplace_back(vxCreateString(s)).get(); };
    matrix::unique_vxArray x(vxCreateDoubleMatrix(1, 100, vxREAL)), y(vxCreateDoubleMatrix(1, 100, vxREAL)),
        color(vxCreateDoubleMatrix(1, 3, vxREAL)), width(vxCreateDoubleScalar(2));
    for (int k = 0; k < 100; ++k) {
      vxGetPr(x.get())[k] = k;
      vxGetPr(y.get())[k] = k * 0.5;
    }
    vxGetPr(color.get())[0] = 1;
    const vxArray* pairs[] = {text("XData"), x.get(), text("YData"), y.get(),         text("Color"),
                              color.get(),   text("LineWidth"), width.get(), text("Tag"), text("data")};
    for (int i = 0; i < 1000; ++i) sgclasses::create(sgclasses::kLineClass, axes, pairs);
    const COSInterfacePtr target = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    copyRepeatedly(state, axes, target, 1001);
  }
  sgclasses::releaseRoot();
}
BENCHMARK(BM_CopyAxesWith1000DataLines)->Unit(benchmark::kMillisecond);

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
