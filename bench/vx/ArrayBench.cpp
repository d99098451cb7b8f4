// Costs of the array operations the library runs most: scalar creation,
// shared copies, struct fields by name and by number, cell access.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include <vx/vx.h>

namespace {

using matrix::from_vantel;
using matrix::unique_vxArray;

// A 1-by-1 struct with `count` fields f0, f1, ... each holding a scalar.
unique_vxArray makeStruct(int count) {
  unique_vxArray s = from_vantel(vxCreateStructMatrix(1, 1, 0, nullptr));
  for (int i = 0; i < count; ++i)
    vxSetField(s.get(), 0, ("f" + std::to_string(i)).c_str(), vxCreateDoubleScalar(i));
  return s;
}

void BM_DoubleScalarCreateDestroy(benchmark::State& state) {
  for (auto _ : state) {
    vxArray* a = vxCreateDoubleScalar(1.0);
    benchmark::DoNotOptimize(a);
    vxDestroyArray(a);
  }
}
BENCHMARK(BM_DoubleScalarCreateDestroy);

void BM_LogicalScalarCreateDestroy(benchmark::State& state) {
  for (auto _ : state) {
    vxArray* a = vxCreateLogicalScalar(true);
    benchmark::DoNotOptimize(a);
    vxDestroyArray(a);
  }
}
BENCHMARK(BM_LogicalScalarCreateDestroy);

// Shared copy and destroy of an n-element double row: independent of n.
void BM_SharedCopyDestroy(benchmark::State& state) {
  unique_vxArray source = from_vantel(vxCreateDoubleMatrix(1, static_cast<vxSize>(state.range(0)), vxREAL));
  for (auto _ : state) {
    vxArray* c = vxCreateSharedDataCopy(source.get());
    benchmark::DoNotOptimize(c);
    vxDestroyArray(c);
  }
}
BENCHMARK(BM_SharedCopyDestroy)->Arg(1)->Arg(1000)->Arg(1000000);

// The first write to a shared copy pays for the element copy.
void BM_SharedCopyFirstWrite(benchmark::State& state) {
  unique_vxArray source = from_vantel(vxCreateDoubleMatrix(1, static_cast<vxSize>(state.range(0)), vxREAL));
  for (auto _ : state) {
    vxArray* c = vxCreateSharedDataCopy(source.get());
    vxGetPr(c)[0] = 1.0;
    vxDestroyArray(c);
  }
}
BENCHMARK(BM_SharedCopyFirstWrite)->Arg(1000);

// Reading the last of n fields by name (the name is found by a linear walk).
void BM_StructGetFieldByName(benchmark::State& state) {
  const int n = static_cast<int>(state.range(0));
  unique_vxArray s = makeStruct(n);
  const std::string last = "f" + std::to_string(n - 1);
  for (auto _ : state) benchmark::DoNotOptimize(vxGetField(s.get(), 0, last.c_str()));
}
BENCHMARK(BM_StructGetFieldByName)->Arg(4)->Arg(32);

void BM_StructGetFieldByNumber(benchmark::State& state) {
  unique_vxArray s = makeStruct(32);
  for (auto _ : state) benchmark::DoNotOptimize(vxGetFieldByNumber(s.get(), 0, 31));
}
BENCHMARK(BM_StructGetFieldByNumber);

// Replacing a field value: includes creating the new scalar and destroying the old.
void BM_StructSetFieldByName(benchmark::State& state) {
  unique_vxArray s = makeStruct(32);
  for (auto _ : state) vxSetField(s.get(), 0, "f31", vxCreateDoubleScalar(2.0));
}
BENCHMARK(BM_StructSetFieldByName);

void BM_StructSetFieldByNumber(benchmark::State& state) {
  unique_vxArray s = makeStruct(32);
  for (auto _ : state) vxSetFieldByNumber(s.get(), 0, 31, vxCreateDoubleScalar(2.0));
}
BENCHMARK(BM_StructSetFieldByNumber);

void BM_CellGet(benchmark::State& state) {
  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 64));
  for (vxIndex i = 0; i < 64; ++i) vxSetCell(c.get(), i, vxCreateDoubleScalar(static_cast<double>(i)));
  vxIndex i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(vxGetCell(c.get(), i));
    i = (i + 1) & 63;
  }
}
BENCHMARK(BM_CellGet);

void BM_CellSet(benchmark::State& state) {
  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 64));
  vxIndex i = 0;
  for (auto _ : state) {
    vxSetCell(c.get(), i, vxCreateDoubleScalar(1.0));
    i = (i + 1) & 63;
  }
}
BENCHMARK(BM_CellSet);

// Unsharing a 64-element cell: one new header per element, the data stays shared.
void BM_CellUnshareShallow(benchmark::State& state) {
  unique_vxArray c = from_vantel(vxCreateCellMatrix(1, 64));
  for (vxIndex i = 0; i < 64; ++i) vxSetCell(c.get(), i, vxCreateDoubleMatrix(1, 100, vxREAL));
  for (auto _ : state) {
    vxArray* copy = vxCreateSharedCopyNotOnArrayList(c.get());
    vxUnshareShallow(copy);
    vxDestroyArray(copy);
  }
}
BENCHMARK(BM_CellUnshareShallow);

}  // namespace
