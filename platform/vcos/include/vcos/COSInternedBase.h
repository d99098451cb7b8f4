// Interned ids: the pointer-sized names of classes, properties, methods,
// events and types. An id points at its entry in a process-wide table, so
// equality and hashing are pointer operations; entries live for the life of
// the process. The empty string gives the empty id (a null entry).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"

namespace vcos::internal {

// One interned string. `folded` is the entry of the lower-case spelling (the
// entry itself when the text has no upper-case letter); case-insensitive
// look-ups compare folded entries.
struct InternedEntry {
  std::string text;
  const InternedEntry* folded = nullptr;
  // For the id of a class whose instances carry a block (or an alias of
  // one): its number among such ids, given once, from 1; the index into the
  // per-class tables of block offsets. 0 for other ids.
  mutable std::uint32_t blockKey = 0;
};

// Thread-safe; returns the same entry for equal texts. Null for "".
VCOS_API const InternedEntry* internEntry(std::string_view text);

}  // namespace vcos::internal

// Policy tag of the ordinary ids: an empty id is allowed and names nothing.
struct IdEmptyPolicy {};

template <class EmptyPolicy>
class COSInternedBase {
 public:
  COSInternedBase() noexcept = default;
  explicit COSInternedBase(const vcos::internal::InternedEntry* e) noexcept : e_(e) {}
  // Interns the text; meant for registration and the language boundary.
  explicit COSInternedBase(const char* text) : e_(vcos::internal::internEntry(text ? text : "")) {}
  explicit COSInternedBase(std::string_view text) : e_(vcos::internal::internEntry(text)) {}

  const char* c_str() const noexcept { return e_ ? e_->text.c_str() : ""; }
  const std::string& str() const noexcept {
    static const std::string empty;
    return e_ ? e_->text : empty;
  }
  bool isEmpty() const noexcept { return e_ == nullptr; }
  explicit operator bool() const noexcept { return e_ != nullptr; }
  const vcos::internal::InternedEntry* entry() const noexcept { return e_; }
  // The id of the lower-case spelling.
  COSInternedBase folded() const noexcept { return COSInternedBase(e_ ? e_->folded : nullptr); }

  friend bool operator==(COSInternedBase a, COSInternedBase b) noexcept { return a.e_ == b.e_; }
  friend bool operator<(COSInternedBase a, COSInternedBase b) noexcept { return a.e_ < b.e_; }

 private:
  const vcos::internal::InternedEntry* e_ = nullptr;
};

// The id used everywhere in the class-object system.
using COSID = COSInternedBase<IdEmptyPolicy>;
// The string type of run-time created names.
using COSString = std::string;

template <class P>
struct std::hash<COSInternedBase<P>> {
  size_t operator()(COSInternedBase<P> id) const noexcept {
    return std::hash<const void*>()(id.entry());
  }
};

namespace vcos::internal {
inline COSID makeInterned(std::string&& text) { return COSID(internEntry(text)); }
}  // namespace vcos::internal
