// The map from source object to its task in a copy transaction: open
// addressing on the object's address, grown at half full. One array for the
// whole plan rather than a node per task; entries are never removed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class COSInterface;

namespace sgutils {

struct CopyTask;

class CopyTaskMap {
 public:
  // The task of `object`, or null.
  CopyTask* find(const COSInterface* object) const noexcept {
    if (slots_.empty() || !object) return nullptr;
    for (std::size_t i = indexOf(object);; i = (i + 1) & mask()) {
      const Slot& slot = slots_[i];
      if (slot.object == object) return slot.task;
      if (!slot.object) return nullptr;
    }
  }
  // Adds `object` unless it is there; false when it was.
  bool insert(const COSInterface* object, CopyTask* task) {
    if ((count_ + 1) * 2 > slots_.size()) grow();
    for (std::size_t i = indexOf(object);; i = (i + 1) & mask()) {
      Slot& slot = slots_[i];
      if (slot.object == object) return false;
      if (!slot.object) {
        slot = {object, task};
        ++count_;
        return true;
      }
    }
  }
  bool contains(const COSInterface* object) const noexcept { return find(object) != nullptr; }
  // Makes room for `n` objects in all, so that adding up to that many grows
  // the array at most once.
  void reserve(std::size_t n) {
    if (n * 2 <= slots_.size()) return;
    std::size_t size = slots_.empty() ? 64 : slots_.size();
    while (size < n * 2) size *= 2;
    rehash(size);
  }
  std::size_t size() const noexcept { return count_; }
  bool empty() const noexcept { return count_ == 0; }

 private:
  struct Slot {
    const COSInterface* object = nullptr;
    CopyTask* task = nullptr;
  };

  std::size_t mask() const noexcept { return slots_.size() - 1; }
  std::size_t indexOf(const COSInterface* object) const noexcept {
    // Objects are at least 16-byte aligned; the multiply spreads the rest.
    const auto bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object) >> 4);
    return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ull) >> 32) & mask();
  }
  void grow() { rehash(slots_.empty() ? 64 : slots_.size() * 2); }
  void rehash(std::size_t size) {
    std::vector<Slot> old(size);
    old.swap(slots_);
    count_ = 0;
    for (const Slot& slot : old)
      if (slot.object) insert(slot.object, slot.task);
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace sgutils
