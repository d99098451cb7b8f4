// A switch for tests: make the Nth object allocation, the Nth property set
// or the Nth listener call raise "VANTEL:vcos:InjectedFault", to prove that
// an operation interrupted at any such point leaves nothing half-built. Off,
// each point costs one load and a branch.
#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/PlatformExport.h"

namespace vcos::fault {

enum class Point : std::uint8_t {
  Allocation,   // an instance's memory, before its blocks and constructor
  PropertySet,  // a set through the client path, before any listener runs
  Listener,     // a listener called for an event or a property access
};

namespace detail {
VCOS_API extern bool armed;
VCOS_API void countAndMaybeThrow(Point point);
}  // namespace detail

// Called at each fault point.
inline void at(Point point) {
  if (detail::armed) detail::countAndMaybeThrow(point);
}

// While it lives, the `n`-th passage (1-based) through `point` raises; the
// other points count nothing. Scopes do not nest.
class VCOS_API Scope {
 public:
  Scope(Point point, std::size_t n);
  ~Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  // Passages through the point so far (the raising one included).
  std::size_t passed() const noexcept;
  bool fired() const noexcept;
};

}  // namespace vcos::fault
