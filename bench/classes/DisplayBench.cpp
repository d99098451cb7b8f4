// The command-line display of 10,000 graphics objects: a column (one line
// per object, each label asked of its class), a row (a grid of class
// names), and a heterogeneous column. Output goes to a capture and is
// dropped.
#include <benchmark/benchmark.h>

#include "foundation/io/OutputCapture.h"
#include "foundation/io/Printing.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

constexpr std::size_t kObjects = 10000;

struct DisplayScene {
  COSInterfacePtr figure, axes;
  matrix::unique_vxArray column, row, mixed;
  DisplayScene() {
    sgclasses::registerClasses();
    services::io::setNumWindowColumns(120);
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
    const COSID line(sgclasses::kLineClass);
    column.reset(omCreateVCOSMatrix(kObjects, 1, line));
    row.reset(omCreateVCOSMatrix(1, kObjects, line));
    mixed.reset(omCreateVCOSMatrix(kObjects, 1, COSID("vantel.graphics.internal.GraphicsNode")));
    matrix::unique_vxArray name(vxCreateString("series"));
    for (std::size_t i = 0; i < kObjects; ++i) {
      COSInterfacePtr l = sgclasses::create(sgclasses::kLineClass, axes);
      matrix::unique_vxArray one(omCreateVCOSScalar(l));
      vxSetProperty(one.get(), 0, "DisplayName", name.get());
      omSetArrayElement(column.get(), i, l);
      omSetArrayElement(row.get(), i, l);
      omSetArrayElement(mixed.get(), i, i % 2 ? l : sgclasses::create(sgclasses::kTextClass, axes));
    }
    omSetClassOfHeterogeneousArray(mixed.get());
  }
  ~DisplayScene() {
    column.reset();
    row.reset();
    mixed.reset();
    services::io::setNumWindowColumns(0);
    sgclasses::releaseRoot();
  }
};

void display(benchmark::State& state, const vxArray* array) {
  for (auto _ : state) {
    services::io::OutputCapture capture;
    const vxArray* in[1] = {array};
    omCallMethod(COSID("vantel.graphics.GraphicsDisplay"), "display", COSGetPublicClient(), 0, nullptr, 1, in, true);
    benchmark::DoNotOptimize(capture.text().size());
  }
}

void BM_DisplayColumnOf10000Lines(benchmark::State& state) {
  DisplayScene scene;
  display(state, scene.column.get());
}
BENCHMARK(BM_DisplayColumnOf10000Lines)->Unit(benchmark::kMillisecond);

void BM_DisplayRowOf10000Lines(benchmark::State& state) {
  DisplayScene scene;
  display(state, scene.row.get());
}
BENCHMARK(BM_DisplayRowOf10000Lines)->Unit(benchmark::kMillisecond);

void BM_DisplayMixedColumnOf10000(benchmark::State& state) {
  DisplayScene scene;
  display(state, scene.mixed.get());
}
BENCHMARK(BM_DisplayMixedColumnOf10000)->Unit(benchmark::kMillisecond);

}  // namespace
