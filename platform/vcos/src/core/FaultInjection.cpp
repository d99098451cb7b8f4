// The test switch of fault points: one point armed at a time, counted from
// the scope's start.
#include "vcos/FaultInjection.h"

#include "foundation/core/except/Error.h"

namespace vcos::fault {
namespace detail {
bool armed = false;
}  // namespace detail

namespace {
Point armedPoint = Point::Allocation;
std::size_t target = 0;
std::size_t count = 0;
bool hasFired = false;
}  // namespace

void detail::countAndMaybeThrow(Point point) {
  if (point != armedPoint || hasFired) return;
  if (++count != target) return;
  hasFired = true;
  throw foundation::core::except::Error("VANTEL:vcos:InjectedFault");
}

Scope::Scope(Point point, std::size_t n) {
  armedPoint = point;
  target = n;
  count = 0;
  hasFired = false;
  detail::armed = true;
}

Scope::~Scope() { detail::armed = false; }

std::size_t Scope::passed() const noexcept { return count; }
bool Scope::fired() const noexcept { return hasFired; }

}  // namespace vcos::fault
