// Graphics files: saving and loading a figure of 1,000 lines, and one of
// about 100,000 objects (100 axes of 999 lines each, with their titles), in
// memory. The size per line is reported as a counter.
#include <benchmark/benchmark.h>

#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Drawnow.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;

// A figure with `axesCount` axes of `lines` lines each; every line has its
// own data, and every other one a colour of its own.
struct FigureScene {
  COSInterfacePtr figure;
  Arr value;
  FigureScene(int axesCount, int lines) {
    sgclasses::registerClasses();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    Arr x(vxCreateDoubleMatrix(1, 3, vxREAL)), red(vxCreateDoubleMatrix(1, 3, vxREAL));
    vxGetPr(red.get())[0] = 1;
    for (int a = 0; a < axesCount; ++a) {
      COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
      for (int i = 0; i < lines; ++i) {
        COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
        Arr self(omCreateVCOSScalar(line));
        for (int k = 0; k < 3; ++k) vxGetPr(x.get())[k] = i + k;
        vxSetProperty(self.get(), 0, "XData", x.get());
        if (i % 2) vxSetProperty(self.get(), 0, "Color", red.get());
      }
    }
    value.reset(omCreateVCOSScalar(figure));
  }
  ~FigureScene() {
    value.reset();
    sgclasses::releaseRoot();
  }
  std::vector<std::uint8_t> save() const {
    const std::pair<std::string, const vxArray*> values[] = {{"figure", value.get()}};
    return sgutils::GraphicsFile::serialize(values);
  }
};

void saveFigure(benchmark::State& state, int axesCount, int lines) {
  const FigureScene scene(axesCount, lines);
  std::size_t size = 0;
  for (auto _ : state) size = scene.save().size();
  state.counters["bytes_per_line"] = static_cast<double>(size) / (axesCount * lines);
  state.counters["bytes"] = static_cast<double>(size);
}

void loadFigure(benchmark::State& state, int axesCount, int lines) {
  const FigureScene scene(axesCount, lines);
  const std::vector<std::uint8_t> bytes = scene.save();
  sgutils::GraphicsLoadOptions options;
  options.parentOfTopLevel = [](const COSInterfacePtr&) { return sgclasses::root(); };
  for (auto _ : state) {
    std::vector<vxNamedValue> loaded = sgutils::GraphicsFile::deserialize(bytes, options);
    state.PauseTiming();
    omGetArrayElement(loaded.at(0).value.get(), 0)->deleteObject(COSGetPublicClient());
    loaded.clear();
    sgclasses::forgetDeletedDirtyObjects();
    state.ResumeTiming();
  }
}

void BM_SaveFigureOf1000Lines(benchmark::State& state) { saveFigure(state, 1, 1000); }
void BM_LoadFigureOf1000Lines(benchmark::State& state) { loadFigure(state, 1, 1000); }
void BM_SaveFigureOf100000Objects(benchmark::State& state) { saveFigure(state, 100, 999); }
void BM_LoadFigureOf100000Objects(benchmark::State& state) { loadFigure(state, 100, 999); }

BENCHMARK(BM_SaveFigureOf1000Lines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadFigureOf1000Lines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveFigureOf100000Objects)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_LoadFigureOf100000Objects)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
