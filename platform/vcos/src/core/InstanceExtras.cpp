// Side tables of objects, from their slot pool.
#include "vcos/src/core/InstanceExtras.h"

#include <cassert>

#include "vcos/SlotPool.h"

namespace vcos::internal {

void* InstanceExtras::operator new(std::size_t size) {
  assert(size == sizeof(InstanceExtras) && "no type derives from InstanceExtras");
  (void)size;
  return poolOf<InstanceExtras>().allocate();
}

void InstanceExtras::operator delete(void* p) noexcept {
  if (p) poolOf<InstanceExtras>().release(p);
}

}  // namespace vcos::internal
