// The per-thread size-class pools behind the data blocks (BlockPool.cpp),
// for other per-object data of the library that is made with every object.
// `release` takes the size that `allocate` was given.
#pragma once

#include <cstddef>

namespace sgutils::blockpool {

void* allocate(std::size_t size);
void release(void* block, std::size_t size) noexcept;

}  // namespace sgutils::blockpool
