// Room for the data blocks of an instance inside the instance's own memory.
// While an instance's blocks are made, the allocator of the data blocks asks
// here first: a block that fits is carved from the room that the class's
// layout reserved after the instance, so the instance and its blocks are one
// allocation, made and freed as one. While the blocks are freed, `owns` tells
// the allocator which blocks it must not give back (they go with the
// instance). The layout of a class is the sum of the block sizes that its
// first instance asked for; a block that does not fit (one made later, on
// first use, or a class whose blocks vary) comes from the allocator's pools.
#pragma once

#include <cstddef>

#include "foundation/PlatformExport.h"

namespace vcos::blockarena {

// `size` bytes, 16-aligned, from the room of the instance whose blocks are
// being made; null when there is none or it is full.
VCOS_API void* allocate(std::size_t size) noexcept;
// Whether `block` lies in the room of the instance whose blocks are being
// made or freed.
VCOS_API bool owns(const void* block) noexcept;

}  // namespace vcos::blockarena
