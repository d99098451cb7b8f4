// Not installed; internal to the class-object system.
//
// The room of the instance whose blocks are being made or freed (see
// vcos/BlockArena.h). A scope sets it and puts the previous one back, so an
// instance made or deleted while another's blocks are made gets its own
// room, and never carves from the other's. One for the process: like the
// slot pools and the reference counts, it serves the interpreter thread (a
// thread-local one costs a look-up of the thread's block on each use).
#pragma once

#include <cstddef>
#include <utility>

#include "foundation/PlatformExport.h"

namespace vcos::internal {

struct BlockRoom {
  std::byte* begin = nullptr;
  std::byte* bump = nullptr;
  std::byte* end = nullptr;
  std::size_t asked = 0;  // bytes asked for in this scope, carved or not
};

extern VCOS_API BlockRoom theBlockRoom;  // exported for the tests
inline BlockRoom& currentBlockRoom() noexcept { return theBlockRoom; }

class BlockArenaScope {
 public:
  BlockArenaScope(std::byte* begin, std::byte* end) noexcept
      : saved_(std::exchange(currentBlockRoom(), BlockRoom{begin, begin, end, 0})) {}
  ~BlockArenaScope() { currentBlockRoom() = saved_; }
  BlockArenaScope(const BlockArenaScope&) = delete;
  BlockArenaScope& operator=(const BlockArenaScope&) = delete;

  // What the blocks made in this scope asked for, in 16-byte units rounded up.
  std::size_t asked() const noexcept { return currentBlockRoom().asked; }

 private:
  BlockRoom saved_;
};

}  // namespace vcos::internal
