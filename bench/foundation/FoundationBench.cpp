// Costs of the foundation services on the paths that the library takes
// often: a log check on a silent channel, a feature read, a per-instance
// store read, a theme colour look-up.
#include <benchmark/benchmark.h>

#include <foundation/feature/Feature.h>
#include <foundation/feature/svFeatureEntry.h>
#include <foundation/log/LogRecord.h>
#include <foundation/log/Logger.h>
#include <foundation/uithemes/ThemeColors.h>
#include <foundation/usm/Detail.h>

namespace {

void BM_LogSilentChannelCheck(benchmark::State& state) {
  static foundation::log::Logger& lg = foundation::log::channel("bench::silent");
  foundation::log::setChannelLevel("bench::silent", 0);
  int value = 42;
  for (auto _ : state) {
    FOUNDATION_LOG(lg, foundation::log::kDebug) << "value " << value;
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(BM_LogSilentChannelCheck);

void BM_FeatureValueByName(benchmark::State& state) {
  svRegisterFeature("BenchFeatureWithALongishName", 1);
  for (auto _ : state) benchmark::DoNotOptimize(foundation::feature::value("BenchFeatureWithALongishName"));
}
BENCHMARK(BM_FeatureValueByName);

void BM_FeatureValueByEntry(benchmark::State& state) {
  svFeatureEntry* entry = svRegisterFeature("BenchFeatureWithALongishName", 1);
  for (auto _ : state) benchmark::DoNotOptimize(entry->value());
}
BENCHMARK(BM_FeatureValueByEntry);

struct CachedValue {
  int x = 7;
};

void BM_UsmFind(benchmark::State& state) {
  using Store = foundation::usm::Detail<foundation::usm::scope::Vvm>;
  static const Store::ID id = Store::getNextID(typeid(CachedValue));
  Store::findOrInsert(id, typeid(CachedValue), foundation::usm::makeValue<CachedValue>());
  for (auto _ : state) benchmark::DoNotOptimize(Store::find(id, typeid(CachedValue)));
}
BENCHMARK(BM_UsmFind);

void BM_ThemeGetColor(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(uithemes::utils::getColor("--cv-graphics-colorNeutral-line-secondary", "dark"));
}
BENCHMARK(BM_ThemeGetColor);

}  // namespace
