// The concrete classes on their hot paths: making a line under an axes
// (with and without defaults held by two ancestors), the memory a line
// takes, a public set of a line's Color from C++ and from sgsh, and findobj
// by Type over 100,000 lines.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "LineBatches.h"
#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "sgclasses/Registration.h"
#include "sgdatatypes/RGBAColor.h"
#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"
#include "sgutils/defaults/DefaultNameAccess.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace {

using Arr = matrix::unique_vxArray;

// A fresh root with one figure and axes; everything goes at the end.
struct Scene {
  COSInterfacePtr figure, axes;
  Scene() {
    sgclasses::registerClasses();
    figure = sgclasses::create(sgclasses::kFigureClass, sgclasses::root());
    axes = sgclasses::create(sgclasses::kAxesClass, figure);
  }
  ~Scene() { sgclasses::releaseRoot(); }
};

void setDefault(const COSInterfacePtr& object, const char* name, vxArray* value) {
  Arr owned(value);
  sgutils::DefaultNameAccess::set(object, name, owned.get());
}

// Made, hooked under the axes, defaults looked for (none held).
void BM_CreateLineUnderAxes(benchmark::State& state) {
  Scene scene;
  sgbench::createLinesInBatches(state, scene.axes);
}
BENCHMARK(BM_CreateLineUnderAxes)->Unit(benchmark::kMicrosecond);

// The same with line defaults held by the figure and by the root.
void BM_CreateLineWithDefaultsOfTwoAncestors(benchmark::State& state) {
  Scene scene;
  setDefault(scene.figure, "defaultLineLineWidth", vxCreateDoubleScalar(2));
  setDefault(sgclasses::root(), "defaultLineMarker", vxCreateString("o"));
  sgbench::createLinesInBatches(state, scene.axes);
}
BENCHMARK(BM_CreateLineWithDefaultsOfTwoAncestors)->Unit(benchmark::kMicrosecond);

// The resident memory of the process, in bytes.
double residentBytes() {
  long pages = 0, resident = 0;
  if (std::FILE* f = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
    std::fclose(f);
  }
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// Bytes per line, 10,000 lines at a time: the malloc heap's (mallinfo), and
// the resident memory's growth over the first batch, which also counts the
// slabs that the object and block pools map for themselves (later batches
// reuse memory that the first left).
void BM_MemoryPerLine(benchmark::State& state) {
  Scene scene;
  constexpr std::size_t kLines = 10000;
  double bytes = 0, resident = -1;
  for (auto _ : state) {
    const std::size_t before = mallinfo2().uordblks;
    const double residentBefore = resident < 0 ? residentBytes() : 0;
    for (std::size_t i = 0; i < kLines; ++i) sgclasses::create(sgclasses::kLineClass, scene.axes);
    bytes = static_cast<double>(mallinfo2().uordblks - before) / kLines;
    if (resident < 0) resident = (residentBytes() - residentBefore) / kLines;
    state.PauseTiming();
    sgbench::deleteLinesOf(scene.axes);
    state.ResumeTiming();
  }
  state.counters["bytes_per_line"] = bytes;
  state.counters["resident_per_line"] = resident;
}
BENCHMARK(BM_MemoryPerLine)->Unit(benchmark::kMillisecond)->Iterations(3);

// A public set of Color from C++, alternating two colours so that every
// set stores (a set of the same value stops early).
void BM_SetLineColorFromCxx(benchmark::State& state) {
  Scene scene;
  COSInterfacePtr line = sgclasses::create(sgclasses::kLineClass, scene.axes);
  COSPropInfo* color = line->getClass()->findPropertyExact(COSID("Color"));
  const graphics::datatype::RGBAColor colors[2] = {graphics::datatype::RGBAColor(1, 0, 0),
                                                   graphics::datatype::RGBAColor(0, 0, 1)};
  const COSClient* client = COSGetPublicClient();
  std::size_t i = 0;
  for (auto _ : state) line->setPropertyValue(client, color, COSValue(&colors[++i & 1]));
}
BENCHMARK(BM_SetLineColorFromCxx);

// `l.Color = c` in an sgsh loop, two sets per iteration (two colours).
void BM_SetLineColorFromSgsh(benchmark::State& state) {
  sgsh::OutputCapture quiet([](std::string_view) {});
  Scene scene;
  const char* script =
      "l = vantel.graphics.primitive.Line(); a = [1 0 0]; b = [0 0 1];\n"
      "for i = 1:100000\n  l.Color = a;\n  l.Color = b;\nend\n";
  for (auto _ : state) {
    sgsh::Interpreter interp;
    interp.run(script);
  }
  state.counters["per_set"] = benchmark::Counter(2e5 * static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_SetLineColorFromSgsh)->Unit(benchmark::kMillisecond)->Iterations(3);

// findobj(f, 'Type', 'line') over 100,000 lines of one axes.
void BM_FindobjLinesByType(benchmark::State& state) {
  Scene scene;
  for (int i = 0; i < 100000; ++i) sgclasses::create(sgclasses::kLineClass, scene.axes);
  Arr self(omCreateVCOSScalar(scene.figure)), name(vxCreateString("Type")), value(vxCreateString("line"));
  const vxArray* inputs[] = {self.get(), name.get(), value.get()};
  std::size_t found = 0;
  for (auto _ : state) {
    vxArray* result = nullptr;
    omCallMethod(COSID("vantel.graphics.Graphics"), "findobj", COSGetPublicClient(), 1, &result, 3, inputs, true);
    found = vxGetNumberOfElements(result);
    vxDestroyArray(result);
  }
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_FindobjLinesByType)->Unit(benchmark::kMillisecond);

}  // namespace
