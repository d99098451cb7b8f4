// The allocator of the data blocks (SGReference and its subclasses), for the
// blocks that do not go in the room after their object: a slot pool per size
// class of 16 bytes up to 512, whose slabs go back to the system when their
// last block does (vcos/SlotPool.h). Like the reference
// counts, it serves the interpreter thread. Larger blocks, and every block
// under AddressSanitizer (which then sees each one), go to the general
// allocator. Other per-object data of the library (the Copyable data) comes
// from the same pools through BlockPool.h.
#include <array>
#include <cstddef>
#include <new>
#include <utility>

#include "vcos/SlotPool.h"
#include "sgutils/lifecycle/SGReference.h"
#include "src/lifecycle/BlockPool.h"
#include "vcos/BlockArena.h"

namespace {

constexpr std::size_t kGranule = 16;  // also the alignment of every block
constexpr std::size_t kLargest = 512;
// Smaller than the instances' slabs: a size class that few blocks use keeps
// little, and an empty slab goes back sooner.
constexpr std::size_t kSlabBytes = 256 * 1024;

using vcos::internal::SlotPool;

SlotPool& sizeClass(std::size_t size) {
  // Never destroyed: blocks may outlive static teardown.
  static auto* pools = new std::array<SlotPool*, kLargest / kGranule + 1>{};
  const std::size_t index = (size + kGranule - 1) / kGranule;
  SlotPool*& pool = (*pools)[index];
  if (!pool) pool = new SlotPool(index * kGranule, kGranule, kSlabBytes);
  return *pool;
}

}  // namespace

void* sgutils::blockpool::allocate(std::size_t size) {
  if (size > kLargest) return ::operator new(size);
  return sizeClass(size).allocate();  // the pool itself defers to the heap under ASan
}

void sgutils::blockpool::release(void* block, std::size_t size) noexcept {
  if (!block) return;
  if (size > kLargest) return ::operator delete(block);
  sizeClass(size).release(block);
}

void* sgutils::blockpool::allocateWithObject(std::size_t size) {
  if (void* block = vcos::blockarena::allocate(size)) return block;
  return allocate(size);
}

void sgutils::blockpool::releaseWithObject(void* block, std::size_t size) noexcept {
  if (vcos::blockarena::owns(block)) return;
  release(block, size);
}

// A block made with its object goes in the room after the object where the
// class's layout has one (vcos/BlockArena.h), and is freed with the object.
void* SGReference::operator new(std::size_t size) { return sgutils::blockpool::allocateWithObject(size); }

void SGReference::operator delete(void* block, std::size_t size) noexcept {
  sgutils::blockpool::releaseWithObject(block, size);
}
