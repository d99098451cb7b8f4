// Rendering figures of the concrete classes to PNG at 1200 by 900: 1,000
// lines of 100 points each, and 10 lines of 100,000 points each. The file
// is written each time (into the temporary folder).
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgrender/FigureRenderer.h"
#include "sgrender/FigureView.h"
#include "vcos/ObjectArray.h"
#include "vcos/VxProperty.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;

void setProp(const COSInterfacePtr& object, const char* name, const vxArray* value) {
  Arr self(omCreateVCOSScalar(object));
  vxSetProperty(self.get(), 0, name, value);
}

Arr series(std::size_t n, double phase, bool isX) {
  Arr a(vxCreateDoubleMatrix(1, n, vxREAL));
  double* p = vxGetPr(a.get());
  for (std::size_t i = 0; i < n; ++i) p[i] = isX ? double(i) : std::sin(double(i) * 0.05 + phase) + phase;
  return a;
}

// With `kept`, the figure is written through a view, once before timing;
// each timed export follows a change of one line's colour.
void renderLines(benchmark::State& state, std::size_t lines, std::size_t points, bool kept = false) {
  sgclasses::registerClasses();
  {
    COSInterfacePtr figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    Arr pos(vxCreateDoubleMatrix(1, 4, vxREAL));
    const double p[] = {0, 0, 1200, 900};
    std::copy(p, p + 4, vxGetPr(pos.get()));
    setProp(figure, "Position", pos.get());
    COSInterfacePtr axes = sgclasses::create(sgclasses::kAxesClass, figure);
    for (std::size_t k = 0; k < lines; ++k) {
      COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, axes);
      setProp(line, "XData", series(points, 0, true).get());
      setProp(line, "YData", series(points, double(k % 10), false).get());
    }
    const std::string file = (std::filesystem::temp_directory_path() / "sgbench-render.png").string();
    if (kept) {
      COSInterfacePtr changed = axes->getNewestChild();
      sgrender::FigureView view(figure);
      view.exportTo(file);
      Arr colors[2] = {Arr(vxCreateString("r")), Arr(vxCreateString("b"))};
      std::size_t turn = 0;
      for (auto _ : state) {
        setProp(changed, "Color", colors[turn++ % 2].get());
        benchmark::DoNotOptimize(view.exportTo(file).lines);
      }
    } else {
      for (auto _ : state) benchmark::DoNotOptimize(sgrender::FigureRenderer::exportFigure(figure, file).lines);
    }
    std::filesystem::remove(file);
  }
  sgclasses::releaseRoot();
}

void BM_RenderPng_1000Lines(benchmark::State& state) { renderLines(state, 1000, 100); }
BENCHMARK(BM_RenderPng_1000Lines)->Unit(benchmark::kMillisecond);

void BM_RenderPng_10LinesOf100kPoints(benchmark::State& state) { renderLines(state, 10, 100000); }
BENCHMARK(BM_RenderPng_10LinesOf100kPoints)->Unit(benchmark::kMillisecond);

}  // namespace

namespace {
void BM_ReexportPngAfterOneChange_10LinesOf100kPoints(benchmark::State& state) { renderLines(state, 10, 100000, true); }
BENCHMARK(BM_ReexportPngAfterOneChange_10LinesOf100kPoints)->Unit(benchmark::kMillisecond);

void BM_ReexportPngAfterOneChange_1000Lines(benchmark::State& state) { renderLines(state, 1000, 100, true); }
BENCHMARK(BM_ReexportPngAfterOneChange_1000Lines)->Unit(benchmark::kMillisecond);
}  // namespace
