// Raw memory handed across the array API (C strings from vxCreateCStrFromArray).
#include "vx/vxMemory.h"

#include <cstdlib>

#include "foundation/core/except/bad_alloc.h"

void* vxMallocEx(std::size_t bytes) {
  void* p = std::malloc(bytes == 0 ? 1 : bytes);
  if (!p) throw foundation::core::except::bad_alloc();
  return p;
}

void vxFreeEx(void* memory) { std::free(memory); }
