// Not installed; internal to the class-object system.
//
// An open-addressing hash table keyed by interned id: look-ups hash the
// entry pointer and probe linearly, with no allocation. Used for every
// per-class table (properties by name, data-block slots, methods, events).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vcos/COSInternedBase.h"

namespace vcos::internal {

template <class V>
class IdTable {
 public:
  V* find(COSID id) noexcept {
    const InternedEntry* key = id.entry();
    if (!key || slots_.empty()) return nullptr;
    std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash(key) & mask;; i = (i + 1) & mask) {
      Slot& s = slots_[i];
      if (s.key == key) return &s.value;
      if (!s.key) return nullptr;
    }
  }
  const V* find(COSID id) const noexcept { return const_cast<IdTable*>(this)->find(id); }

  // Inserts or replaces.
  void set(COSID id, V value) {
    if (!id.entry()) return;
    if ((size_ + 1) * 2 > slots_.size()) grow();
    place(id.entry(), std::move(value));
  }
  // Inserts only when absent; true when inserted.
  bool add(COSID id, V value) {
    if (find(id)) return false;
    set(id, std::move(value));
    return true;
  }
  std::size_t size() const noexcept { return size_; }

  template <class F>
  void forEach(F&& f) const {
    for (const Slot& s : slots_)
      if (s.key) f(COSID(s.key), s.value);
  }
  template <class F>
  void forEachValue(F&& f) {
    for (Slot& s : slots_)
      if (s.key) f(s.value);
  }

 private:
  struct Slot {
    const InternedEntry* key = nullptr;
    V value{};
  };
  static std::size_t hash(const void* p) noexcept {
    auto x = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(p));
    x ^= x >> 29;
    x *= 0xBF58476D1CE4E5B9ull;
    return static_cast<std::size_t>(x ^ (x >> 32));
  }
  void place(const InternedEntry* key, V value) {
    std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash(key) & mask;; i = (i + 1) & mask) {
      Slot& s = slots_[i];
      if (s.key == key) {
        s.value = std::move(value);
        return;
      }
      if (!s.key) {
        s.key = key;
        s.value = std::move(value);
        ++size_;
        return;
      }
    }
  }
  void grow() {
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? 8 : old.size() * 2, Slot{});
    size_ = 0;
    for (Slot& s : old)
      if (s.key) place(s.key, std::move(s.value));
  }

  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace vcos::internal
