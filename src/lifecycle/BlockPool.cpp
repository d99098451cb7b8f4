// The allocator of the data blocks (SGReference and its subclasses): a free
// list per size class of 16 bytes up to 512, refilled from 64 KiB slabs that
// are kept for reuse and never handed back. Per thread, so no locking; a
// block freed on another thread joins that thread's list. Larger blocks,
// and every block under AddressSanitizer (which then sees each one), go to
// the general allocator. Other per-object data of the library (the Copyable
// data) comes from the same pools through BlockPool.h.
#include <array>
#include <cstddef>
#include <new>
#include <utility>

#include "sgutils/lifecycle/SGReference.h"
#include "src/lifecycle/BlockPool.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPooled = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kPooled = false;
#else
constexpr bool kPooled = true;
#endif
#else
constexpr bool kPooled = true;
#endif

constexpr std::size_t kGranule = 16;  // also the alignment of every block
constexpr std::size_t kLargest = 512;
constexpr std::size_t kSlabBytes = 64 * 1024;

struct FreeBlock {
  FreeBlock* next;
};

struct SizeClass {
  FreeBlock* free = nullptr;
  std::byte* bump = nullptr;  // the rest of the newest slab
  std::byte* end = nullptr;
};

std::array<SizeClass, kLargest / kGranule + 1>& sizeClasses() {
  thread_local std::array<SizeClass, kLargest / kGranule + 1> classes{};
  return classes;
}

}  // namespace

void* sgutils::blockpool::allocate(std::size_t size) {
  if (!kPooled || size > kLargest) return ::operator new(size);
  const std::size_t index = (size + kGranule - 1) / kGranule;
  SizeClass& c = sizeClasses()[index];
  if (c.free) return std::exchange(c.free, c.free->next);
  const std::size_t bytes = index * kGranule;
  if (static_cast<std::size_t>(c.end - c.bump) < bytes) {
    c.bump = static_cast<std::byte*>(::operator new(kSlabBytes));
    c.end = c.bump + kSlabBytes;
  }
  return std::exchange(c.bump, c.bump + bytes);
}

void sgutils::blockpool::release(void* block, std::size_t size) noexcept {
  if (!block) return;
  if (!kPooled || size > kLargest) return ::operator delete(block);
  SizeClass& c = sizeClasses()[(size + kGranule - 1) / kGranule];
  c.free = ::new (block) FreeBlock{c.free};
}

void* SGReference::operator new(std::size_t size) { return sgutils::blockpool::allocate(size); }

void SGReference::operator delete(void* block, std::size_t size) noexcept { sgutils::blockpool::release(block, size); }
