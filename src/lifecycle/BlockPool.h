// The per-thread size-class pools behind the data blocks (BlockPool.cpp),
// for other per-object data of the library that is made with every object.
// `release` takes the size that `allocate` was given.
#pragma once

#include <cstddef>

namespace sgutils::blockpool {

void* allocate(std::size_t size);
void release(void* block, std::size_t size) noexcept;

// The same for data made with its object and freed with it (from the
// object's class info): in the room after the object where the class's
// layout has one (vcos/BlockArena.h), else from the pools.
void* allocateWithObject(std::size_t size);
void releaseWithObject(void* block, std::size_t size) noexcept;

}  // namespace sgutils::blockpool
