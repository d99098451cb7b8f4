// Themes over large trees: re-applying a figure's theme over 100,000 lines
// where no value changes, switching the theme so that every themed value
// changes, and making a line under a themed axes.
#include <benchmark/benchmark.h>

#include <vector>

#include "LineBatches.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgclasses/Theming.h"
#include "sgutils/themes/ThemeUtils.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;

void setTheme(const COSInterfacePtr& figure, const char* name) {
  Arr value(vxCreateString(name));
  COSPropInfo* p = figure->findPropertyInfo(COSID("Theme"));
  figure->setPropertyValue(COSGetPublicClient(), p, COSValue(value.get()));
}

// One figure with one axes holding `lines` lines, themed dark.
struct ThemedScene {
  COSInterfacePtr figure, axes;
  explicit ThemedScene(int lines) {
    sgclasses::registerClasses();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    setTheme(figure, "dark");
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
    for (int i = 0; i < lines; ++i) sgclasses::create(sgclasses::kLineClass, axes);
  }
  ~ThemedScene() { sgclasses::releaseRoot(); }
};

constexpr int kLines = 100000;

void BM_ThemeReapplyNothingChanges(benchmark::State& state) {
  ThemedScene scene(kLines);
  const sgutils::themes::ThemeInfo theme(sgclasses::themeFromAncestors(scene.figure.get()));
  for (auto _ : state) sgutils::themes::applyThemeToSubtree(scene.figure, theme);
  state.counters["objects"] = kLines + 2;
}
BENCHMARK(BM_ThemeReapplyNothingChanges)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_ThemeSwitchEverythingChanges(benchmark::State& state) {
  ThemedScene scene(kLines);
  bool dark = true;
  for (auto _ : state) {
    dark = !dark;
    setTheme(scene.figure, dark ? "dark" : "light");
  }
  state.counters["objects"] = kLines + 2;
}
BENCHMARK(BM_ThemeSwitchEverythingChanges)->Unit(benchmark::kMillisecond)->Iterations(6);

void createLines(benchmark::State& state, bool themed) {
  ThemedScene scene(0);
  if (!themed) setTheme(scene.figure, "");
  sgbench::createLinesInBatches(state, scene.axes);
}

void BM_CreateLineUnderThemedAxes(benchmark::State& state) { createLines(state, true); }
BENCHMARK(BM_CreateLineUnderThemedAxes)->Unit(benchmark::kMicrosecond);

void BM_CreateLineUnderUnthemedAxes(benchmark::State& state) { createLines(state, false); }
BENCHMARK(BM_CreateLineUnderUnthemedAxes)->Unit(benchmark::kMicrosecond);

}  // namespace
