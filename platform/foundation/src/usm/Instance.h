// Not installed; internal to sgplatform.
//
// One interpreter instance's slot table. Slots are grouped in chunks that are
// allocated on first use and never move, so a reader finds a value with two
// loads and no lock; writers take the instance's mutex.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <typeinfo>

#include "foundation/usm/Detail.h"

namespace foundation::usm {

class Instance {
 public:
  static constexpr std::size_t kChunkSize = 256;
  static constexpr std::size_t kChunkCount = 256;
  static constexpr std::size_t kCapacity = kChunkSize * kChunkCount;

  Instance();
  ~Instance();
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  void* find(std::size_t id) const noexcept {
    const Chunk* chunk = chunks_[id / kChunkSize].load(std::memory_order_acquire);
    return chunk ? chunk->slots[id % kChunkSize].value.load(std::memory_order_acquire) : nullptr;
  }
  // Stores the value if the slot is empty (or always, with `replace`) and
  // returns what the slot holds afterwards.
  void* store(std::size_t id, ValuePtr value, bool replace);
  bool erase(std::size_t id);

  // The current instance of this process.
  static Instance* current() noexcept { return current_.load(std::memory_order_acquire); }
  static Instance* makeCurrent(Instance* instance) noexcept {
    return current_.exchange(instance, std::memory_order_acq_rel);
  }
  // Makes `instance` current unless another instance already is.
  static void installIfNone(Instance* instance) noexcept {
    Instance* expected = nullptr;
    current_.compare_exchange_strong(expected, instance, std::memory_order_acq_rel);
  }
  static std::atomic<int>& liveCount() noexcept;

 private:
  struct Slot {
    std::atomic<void*> value{nullptr};
    ValuePtr owner{nullptr, [](void*) {}};
  };
  struct Chunk {
    std::array<Slot, kChunkSize> slots;
  };

  Slot& slotFor(std::size_t id);  // under mutex_

  std::array<std::atomic<Chunk*>, kChunkCount> chunks_{};
  std::array<std::unique_ptr<Chunk>, kChunkCount> owned_;
  std::mutex mutex_;
  static std::atomic<Instance*> current_;
};

}  // namespace foundation::usm
