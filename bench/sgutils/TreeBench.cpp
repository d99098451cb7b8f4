// The object tree: reading Children of a wide container, reordering it, and
// findobj on graphics objects, whose children lists apply the hidden-handle
// rules, over large trees.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "fixtures/sgutils/tree/TreeClasses.h"
#include "vcos/COSDataType.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace {

using namespace sgtest::tree;

// A container with `n` leaves.
struct Wide {
  std::unique_ptr<RootScope> scope = std::make_unique<RootScope>();
  COSInterfacePtr box;
  std::vector<COSInterfacePtr> leaves;
  explicit Wide(std::size_t n) : box(make(kContainer, scope->root())) {
    for (std::size_t i = 0; i < n; ++i) leaves.push_back(make(kLeaf, box));
  }
};

Wide& wide() {
  static Wide w(1000);
  return w;
}

void BM_ReadChildren(benchmark::State& state) {
  Wide& w = wide();
  const COSPropInfo* children = w.box->getClass()->findPropertyExact(COSID("Children"));
  for (auto _ : state) {
    COSValue v = w.box->getPropertyValue(COSGetPublicClient(), children);
    benchmark::DoNotOptimize(v);
    w.box->releasePropertyValue(COSGetPublicClient(), children, v);
  }
}
BENCHMARK(BM_ReadChildren)->Unit(benchmark::kMicrosecond);

void BM_ReorderChildren(benchmark::State& state) {
  Wide& w = wide();
  const COSPropInfo* children = w.box->getClass()->findPropertyExact(COSID("Children"));
  // Two orders, set in turn, so that each set moves every child.
  matrix::unique_vxArray orders[2];
  for (int k = 0; k < 2; ++k) {
    orders[k].reset(omCreateVCOSMatrix(w.leaves.size(), 1, kLeaf));
    for (std::size_t i = 0; i < w.leaves.size(); ++i)
      omSetArrayElement(orders[k].get(), i, w.leaves[k ? i : w.leaves.size() - 1 - i]);
  }
  int turn = 0;
  for (auto _ : state) {
    w.box->setPropertyValue(COSGetPublicClient(), children, COSValue(orders[turn].get()));
    turn ^= 1;
  }
}
BENCHMARK(BM_ReorderChildren)->Unit(benchmark::kMicrosecond);

// root > `branches` containers > 1,000 leaves each; one leaf in ten is
// hidden ("off"), and each container has one leaf tagged "needle" and one
// hidden leaf tagged "needle".
struct Forest {
  std::unique_ptr<RootScope> scope = std::make_unique<RootScope>();
  std::size_t size = 1;
  explicit Forest(std::size_t branches) {
    for (std::size_t b = 0; b < branches; ++b) {
      COSInterfacePtr box = make(kContainer, scope->root());
      ++size;
      for (std::size_t i = 0; i < 999; ++i, ++size)
        make(kLeaf, box, i == 501 || i == 510 ? "needle" : "hay",
             i % 10 == 0 ? HandleVisibility::Off : HandleVisibility::On);
    }
  }
};

Forest& forest(std::size_t branches) {
  static std::unique_ptr<Forest> made;
  static std::size_t madeFor = 0;
  if (madeFor != branches) {
    made.reset();
    made = std::make_unique<Forest>(branches);
    madeFor = branches;
  }
  return *made;
}

void BM_GraphicsFindobjByTag(benchmark::State& state) {
  Forest& f = forest(static_cast<std::size_t>(state.range(0)));
  matrix::unique_vxArray start(omCreateVCOSScalar(f.scope->root()));
  matrix::unique_vxArray tag(vxCreateString("Tag")), needle(vxCreateString("needle"));
  const vxArray* in[] = {start.get(), tag.get(), needle.get()};
  std::size_t found = 0;
  for (auto _ : state) {
    vxArray* out[1] = {nullptr};
    omCallMethod(COSID(kRoot), COSID("findobj"), COSGetPublicClient(), 1, out, 3, in, true);
    found = vxGetNumberOfElements(out[0]);
    matrix::destroyArray(out[0]);
  }
  state.counters["objects"] = static_cast<double>(f.size);
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BM_GraphicsFindobjByTag)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

}  // namespace
