// The process-wide table of interned strings. Entries are never freed, so an
// id stays valid for the life of the process; the table is guarded by a
// mutex because ids may be made on any thread.
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

#include "vcos/COSInternedBase.h"

namespace vcos::internal {
namespace {

struct Table {
  std::mutex mutex;
  std::unordered_map<std::string_view, std::unique_ptr<InternedEntry>> entries;
};

Table& table() {
  static Table* t = new Table;  // never destroyed: ids outlive static teardown
  return *t;
}

const InternedEntry* internLocked(Table& t, std::string_view text) {
  if (auto it = t.entries.find(text); it != t.entries.end()) return it->second.get();
  auto entry = std::make_unique<InternedEntry>();
  entry->text.assign(text);
  InternedEntry* raw = entry.get();
  t.entries.emplace(std::string_view(raw->text), std::move(entry));
  std::string lower(text);
  for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  raw->folded = lower == raw->text ? raw : internLocked(t, lower);
  return raw;
}

}  // namespace

const InternedEntry* internEntry(std::string_view text) {
  if (text.empty()) return nullptr;
  // Callers intern the same texts again and again (names at the language
  // boundary, usually literals): a small per-thread cache by address answers
  // those without the lock and the hash. A hit is confirmed by comparing the
  // text, so a reused buffer never gives a stale entry.
  struct Recent {
    const char* data = nullptr;
    std::size_t size = 0;
    const InternedEntry* entry = nullptr;
  };
  thread_local std::array<Recent, 64> recent{};
  Recent& r = recent[(reinterpret_cast<std::uintptr_t>(text.data()) >> 3) & 63];
  if (r.data == text.data() && r.size == text.size() && std::memcmp(r.entry->text.data(), text.data(), text.size()) == 0)
    return r.entry;
  Table& t = table();
  std::lock_guard lock(t.mutex);
  const InternedEntry* e = internLocked(t, text);
  r = {text.data(), text.size(), e};
  return e;
}

}  // namespace vcos::internal
