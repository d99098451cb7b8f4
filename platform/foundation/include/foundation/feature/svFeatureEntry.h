// Process-wide feature switches. A feature is a named integer that the
// environment can change; the code that registers it may ask to hear of each
// change (onSet) and may give it a command form (query), a function of the
// built-in shape that reads and writes the value from the language.
//
// svRegisterFeature registers a name once: registering a name that already
// exists keeps the first registration, initial value and callbacks included,
// and returns the existing entry. Entries live until the end of the process,
// so a pointer to one may be kept.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// Hears the new value after foundation::feature::set has stored it.
using svFeatureOnSet = std::function<void(int value)>;
// The command form: output count, outputs, input count, inputs.
using svFeatureQuery = std::function<void(int nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[])>;

class FOUNDATION_API svFeatureEntry {
 public:
  svFeatureEntry(std::string name, int initial, svFeatureOnSet onSet, svFeatureQuery query)
      : name_(std::move(name)), value_(initial), onSet_(std::move(onSet)), query_(std::move(query)) {}
  svFeatureEntry(const svFeatureEntry&) = delete;
  svFeatureEntry& operator=(const svFeatureEntry&) = delete;

  const std::string& name() const noexcept { return name_; }
  int value() const noexcept { return value_.load(std::memory_order_relaxed); }
  // Stores a value without calling onSet: the way a feature's own callbacks
  // raise another feature (the flush request, for one).
  void setValue(int value) noexcept { value_.store(value, std::memory_order_relaxed); }

  const svFeatureOnSet& onSet() const noexcept { return onSet_; }
  const svFeatureQuery& query() const noexcept { return query_; }

 private:
  std::string name_;
  std::atomic<int> value_;
  svFeatureOnSet onSet_;
  svFeatureQuery query_;
};

// Registers a feature (or finds the one of that name) and returns its entry.
FOUNDATION_API svFeatureEntry* svRegisterFeature(std::string_view name, int initial, svFeatureOnSet onSet = {},
                                                 svFeatureQuery query = {});

// The entry of a registered feature, or null for a name never registered.
FOUNDATION_API svFeatureEntry* svFindFeatureEntry(std::string_view name) noexcept;
