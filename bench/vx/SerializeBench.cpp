// Saving and reading back values: a large numeric array, and many small
// records (a struct per element, the shape a saved object's properties take).
#include <benchmark/benchmark.h>

#include <utility>
#include <vector>

#include <vx/vx.h>
#include <vx/vxSerialize.h>

namespace {

using matrix::from_vantel;
using matrix::unique_vxArray;

unique_vxArray makeDoubles(vxSize n) {
  unique_vxArray a = from_vantel(vxCreateDoubleMatrix(1, n, vxREAL));
  for (vxSize i = 0; i < n; ++i) vxGetPr(a.get())[i] = static_cast<double>(i) * 0.37;
  return a;
}

// A cell of n records: {Type 'line', Color [r g b], LineWidth, Visible, Tag}.
unique_vxArray makeRecords(vxSize n) {
  const char* fields[] = {"Type", "Color", "LineWidth", "Visible", "Tag"};
  unique_vxArray cell = from_vantel(vxCreateCellMatrix(n, 1));
  for (vxSize i = 0; i < n; ++i) {
    vxArray* s = vxCreateStructMatrix(1, 1, 5, fields);
    vxSetFieldByNumber(s, 0, 0, vxCreateString("line"));
    vxArray* color = vxCreateDoubleMatrix(1, 3, vxREAL);
    vxGetPr(color)[0] = 0;
    vxGetPr(color)[1] = 0.447;
    vxGetPr(color)[2] = static_cast<double>(i % 100) / 100;
    vxSetFieldByNumber(s, 0, 1, color);
    vxSetFieldByNumber(s, 0, 2, vxCreateDoubleScalar(0.5 + static_cast<double>(i % 4)));
    vxSetFieldByNumber(s, 0, 3, vxCreateLogicalScalar(true));
    vxSetFieldByNumber(s, 0, 4, vxCreateString(""));
    vxSetCell(cell.get(), i, s);
  }
  return cell;
}

void roundTrip(benchmark::State& state, const vxArray* value, vxSize items) {
  const std::vector<std::pair<std::string, const vxArray*>> entries = {{"v", value}};
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::vector<std::uint8_t> saved = vxSerializeValues(entries);
    std::vector<vxNamedValue> back = vxDeserializeValues(saved, {});
    bytes = saved.size();
    benchmark::DoNotOptimize(back.data());
  }
  state.counters["bytes"] = static_cast<double>(bytes);
  state.counters["bytes/item"] = static_cast<double>(bytes) / static_cast<double>(items);
}

void BM_SaveLoadDoubles(benchmark::State& state) {
  unique_vxArray a = makeDoubles(static_cast<vxSize>(state.range(0)));
  roundTrip(state, a.get(), static_cast<vxSize>(state.range(0)));
}
BENCHMARK(BM_SaveLoadDoubles)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_SaveLoadRecords(benchmark::State& state) {
  unique_vxArray cell = makeRecords(static_cast<vxSize>(state.range(0)));
  roundTrip(state, cell.get(), static_cast<vxSize>(state.range(0)));
}
BENCHMARK(BM_SaveLoadRecords)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_SaveRecords(benchmark::State& state) {
  unique_vxArray cell = makeRecords(static_cast<vxSize>(state.range(0)));
  const std::vector<std::pair<std::string, const vxArray*>> entries = {{"v", cell.get()}};
  for (auto _ : state) benchmark::DoNotOptimize(vxSerializeValues(entries).data());
}
BENCHMARK(BM_SaveRecords)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
