// Line creation measured in batches: lines are made under an axes and, every
// batch, deleted outside the timing, so the tree never grows past a batch.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

#include "sgclasses/ClassNames.h"
#include "sgclasses/Objects.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"

namespace sgbench {

// Deletes the lines among the axes' children; other children stay.
inline void deleteLinesOf(const COSInterfacePtr& axes) {
  std::vector<COSInterfacePtr> lines;
  for (COSInterface* c = axes->getNewestChild(); c; c = c->getOlderSibling())
    if (c->getClass()->isSubclassOf(COSID(sgclasses::kLineClass))) lines.emplace_back(c);
  for (const COSInterfacePtr& line : lines) line->deleteObject(COSGetPublicClient());
}

inline void createLinesInBatches(benchmark::State& state, const COSInterfacePtr& axes) {
  constexpr std::size_t kBatch = 10000;
  std::size_t made = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(sgclasses::create(sgclasses::kLineClass, axes));
    if (++made == kBatch) {
      state.PauseTiming();
      deleteLinesOf(axes);
      made = 0;
      state.ResumeTiming();
    }
  }
  deleteLinesOf(axes);
}

}  // namespace sgbench
