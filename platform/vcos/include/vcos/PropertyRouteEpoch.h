// A count that changes whenever something that decides the course of a
// property get or set changes: a property slot added to a class, a custom
// set or get path turned on, class property listeners added or removed, a
// class destroyed, a type conversion added or removed. Callers that keep an
// answer derived from these (a property found by name for a class, whether
// a class's set of a property is observed) keep the count with it and work
// the answer out again when the count has moved. Listeners of one object
// are not counted: ask the object (COSInterface::hasOwnPropertyListeners).
#pragma once

#include <atomic>
#include <cstdint>

#include "foundation/PlatformExport.h"

namespace vcos {

namespace internal {
VCOS_API extern std::atomic<std::uint64_t> propertyRouteEpochCount;
}

inline std::uint64_t propertyRouteEpoch() noexcept {
  return internal::propertyRouteEpochCount.load(std::memory_order_relaxed);
}

VCOS_API void bumpPropertyRouteEpoch() noexcept;

}  // namespace vcos
