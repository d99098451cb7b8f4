// The feature registry: one entry per name, found by name under a shared
// lock, never removed.
#include <map>
#include <mutex>
#include <memory>
#include <shared_mutex>

#include "foundation/core/except/Error.h"
#include "foundation/feature/Feature.h"
#include "foundation/feature/svFeatureEntry.h"

namespace {

class FeatureRegistry {
 public:
  static FeatureRegistry& instance() {
    static FeatureRegistry registry;
    return registry;
  }

  svFeatureEntry* add(std::string_view name, int initial, svFeatureOnSet onSet, svFeatureQuery query) {
    std::unique_lock lock(mutex_);
    auto it = entries_.find(name);
    if (it != entries_.end()) return it->second.get();
    auto entry = std::make_unique<svFeatureEntry>(std::string(name), initial, std::move(onSet), std::move(query));
    return entries_.emplace(std::string(name), std::move(entry)).first->second.get();
  }

  svFeatureEntry* find(std::string_view name) const noexcept {
    std::shared_lock lock(mutex_);
    auto it = entries_.find(name);
    return it == entries_.end() ? nullptr : it->second.get();
  }

 private:
  mutable std::shared_mutex mutex_;
  std::map<std::string, std::unique_ptr<svFeatureEntry>, std::less<>> entries_;
};

svFeatureEntry& entryOrThrow(std::string_view name) {
  if (svFeatureEntry* entry = FeatureRegistry::instance().find(name)) return *entry;
  throw foundation::core::except::Error("VANTEL:feature:UnknownFeature", name);
}

}  // namespace

svFeatureEntry* svRegisterFeature(std::string_view name, int initial, svFeatureOnSet onSet, svFeatureQuery query) {
  return FeatureRegistry::instance().add(name, initial, std::move(onSet), std::move(query));
}

svFeatureEntry* svFindFeatureEntry(std::string_view name) noexcept { return FeatureRegistry::instance().find(name); }

namespace foundation::feature {

bool isOn(std::string_view name) { return entryOrThrow(name).value() != 0; }

int value(std::string_view name) { return entryOrThrow(name).value(); }

void set(std::string_view name, int value) {
  svFeatureEntry& entry = entryOrThrow(name);
  entry.setValue(value);
  // Called without the registry lock: a callback may look up other features.
  if (entry.onSet()) entry.onSet()(value);
}

void call(std::string_view name, int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  svFeatureEntry& entry = entryOrThrow(name);
  if (!entry.query()) throw core::except::Error("VANTEL:feature:NoCommandForm", name);
  entry.query()(nlhs, plhs, nrhs, prhs);
}

}  // namespace foundation::feature
