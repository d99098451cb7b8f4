// Defaults and factory values on the concrete classes: applying three
// defaults held by two ancestors to a line (the step that a new line pays on
// top of its bare creation), and the whole factory list of the root.
#include <benchmark/benchmark.h>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "sgutils/defaults/FactoryBuiltins.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;

struct LineScene {
  COSInterfacePtr figure, axes, line;
  explicit LineScene(bool withDefaults) {
    sgclasses::registerClasses();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
    if (withDefaults) {
      Arr width(vxCreateDoubleScalar(2)), style(vxCreateString("--")), marker(vxCreateString("o"));
      sgutils::DefaultNameAccess::set(figure, "defaultLineLineWidth", width.get());
      sgutils::DefaultNameAccess::set(figure, "defaultLineLineStyle", style.get());
      sgutils::DefaultNameAccess::set(sgclasses::root(), "defaultLineMarker", marker.get());
    }
    line = sgclasses::create(sgclasses::kLineClass, axes);
  }
  ~LineScene() { sgclasses::releaseRoot(); }
};

void applyDefaults(benchmark::State& state, bool withDefaults) {
  LineScene scene(withDefaults);
  SGHandle* block = toSGHandle(scene.line);
  for (auto _ : state) block->applyDefaultProperties(scene.axes, false);
}

// The walk up and the look-up of each ancestor's store, none held.
void BM_ApplyLineDefaultsNoneHeld(benchmark::State& state) { applyDefaults(state, false); }
BENCHMARK(BM_ApplyLineDefaultsNoneHeld);

// Three line defaults, two on the figure and one on the root, applied again
// to a line (the sets keep values the line has: the cost is the look-ups,
// the conversions and the sets).
void BM_ApplyThreeLineDefaultsFromTwoAncestors(benchmark::State& state) { applyDefaults(state, true); }
BENCHMARK(BM_ApplyThreeLineDefaultsFromTwoAncestors);

// get(groot, 'factory'): every factory value of every class as one struct.
void BM_RootFactoryValues(benchmark::State& state) {
  sgclasses::registerClasses();
  for (auto _ : state) {
    vxArray* out[1] = {nullptr};
    rootFactoryValues(1, out, 0, nullptr);
    Arr result(out[0]);
    benchmark::DoNotOptimize(result.get());
  }
  sgclasses::releaseRoot();
}
BENCHMARK(BM_RootFactoryValues)->Unit(benchmark::kMicrosecond);

}  // namespace
