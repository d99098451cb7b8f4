// The room for an instance's blocks inside its own allocation.
#include "vcos/BlockArena.h"

#include <cstdint>
#include <functional>

#include "vcos/src/core/BlockArenaScope.h"

namespace vcos::internal {

BlockRoom theBlockRoom;

}  // namespace vcos::internal

void* vcos::blockarena::allocate(std::size_t size) noexcept {
  internal::BlockRoom& room = internal::currentBlockRoom();
  const std::size_t bytes = (size + 15) & ~std::size_t(15);
  room.asked += bytes;
  if (static_cast<std::size_t>(room.end - room.bump) < bytes) return nullptr;
  return std::exchange(room.bump, room.bump + bytes);
}

bool vcos::blockarena::owns(const void* block) noexcept {
  const internal::BlockRoom& room = internal::currentBlockRoom();
  // Compared as addresses: the block may belong to no room at all.
  std::less<const void*> before;
  return !before(block, room.begin) && before(block, room.end);
}
