// The command language's evaluator on its hot path: scalar arithmetic in a
// loop, a function call per iteration, and element assignment into a
// growing array. Each benchmark iteration runs a whole script.
#include <benchmark/benchmark.h>

#include <string>

#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"

namespace {

void runScript(benchmark::State& state, const std::string& script, double iterationsPerRun) {
  sgsh::OutputCapture quiet([](std::string_view) {});
  for (auto _ : state) {
    sgsh::Interpreter interp;
    interp.run(script);
    benchmark::DoNotOptimize(interp.findVariable("acc"));
  }
  state.counters["per_loop_iteration"] = benchmark::Counter(
      iterationsPerRun * static_cast<double>(state.iterations()),
      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// 1,000,000 iterations of scalar arithmetic.
void BM_ScalarArithmeticLoop(benchmark::State& state) {
  runScript(state, "acc = 0; for i = 1:1000000\n  acc = acc + i * 2 - 1;\nend\n", 1e6);
}
BENCHMARK(BM_ScalarArithmeticLoop)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same with a comparison and a branch per iteration.
void BM_ScalarLoopWithBranch(benchmark::State& state) {
  runScript(state,
            "acc = 0; for i = 1:1000000\n  if mod(i, 2) == 0, acc = acc + i; else, acc = acc - 1; end\nend\n",
            1e6);
}
BENCHMARK(BM_ScalarLoopWithBranch)->Unit(benchmark::kMillisecond)->Iterations(3);

// A call of a script function per iteration.
void BM_FunctionCallLoop(benchmark::State& state) {
  runScript(state, "acc = 0; for i = 1:100000\n  acc = twice(acc) - acc + 1;\nend\nfunction y = twice(x)\n  y = 2 * x;\nend\n",
            1e5);
}
BENCHMARK(BM_FunctionCallLoop)->Unit(benchmark::kMillisecond)->Iterations(3);

// Element assignment into an array that grows by one each time.
void BM_GrowingArrayLoop(benchmark::State& state) {
  runScript(state, "acc = []; for i = 1:10000\n  acc(end + 1) = i;\nend\n", 1e4);
}
BENCHMARK(BM_GrowingArrayLoop)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same growth at several lengths: with assignment in place and spare
// room in the array, the time per element stays flat as the length grows.
void BM_GrowingArrayByLength(benchmark::State& state) {
  const auto n = state.range(0);
  runScript(state, "acc = []; for i = 1:" + std::to_string(n) + "\n  acc(end + 1) = i;\nend\n",
            static_cast<double>(n));
}
BENCHMARK(BM_GrowingArrayByLength)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

// A cell that grows by one each time (c{end + 1} = v).
void BM_GrowingCellByLength(benchmark::State& state) {
  const auto n = state.range(0);
  runScript(state, "acc = {}; for i = 1:" + std::to_string(n) + "\n  acc{end + 1} = i;\nend\n",
            static_cast<double>(n));
}
BENCHMARK(BM_GrowingCellByLength)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Writes into a preallocated array: no growth, and no copy of the array.
void BM_IndexedWriteLoop(benchmark::State& state) {
  runScript(state, "acc = zeros(1, 100000); for i = 1:100000\n  acc(i) = i;\nend\n", 1e5);
}
BENCHMARK(BM_IndexedWriteLoop)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
