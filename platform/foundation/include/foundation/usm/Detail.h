// The per-instance store. The environment can host several isolated
// interpreter instances in one process; a value that must exist once per
// instance (a cached class, a namespace, an init flag) lives in a slot of the
// current instance's store rather than in a static.
//
// A value type gets a slot id once per process (getNextID, kept in a static by
// the caller); each instance then holds at most one value per slot. A read is
// an index into the current instance's slot table: no lock, no allocation.
// Values are owned by the store and freed with the deleter they came with
// when they are erased or their instance ends.
#pragma once

#include <cstddef>
#include <memory>
#include <typeinfo>

#include "foundation/PlatformExport.h"

namespace foundation::usm {

namespace scope {
// The scope of one interpreter instance.
struct Vvm;
}  // namespace scope

// Owns one stored value and knows how to free it.
using ValuePtr = std::unique_ptr<void, void (*)(void*)>;

// Makes a ValuePtr for a new T.
template <class T, class... Args>
ValuePtr makeValue(Args&&... args) {
  return ValuePtr(new T(std::forward<Args>(args)...), [](void* p) { delete static_cast<T*>(p); });
}

template <class Scope>
class Detail;

template <>
class FOUNDATION_API Detail<scope::Vvm> {
 public:
  using ID = std::size_t;

  // A fresh slot id for values of this type. Call once per value type and
  // keep the id in a static.
  static ID getNextID(const std::type_info& type);

  // The value in this slot of the current instance, or null.
  static void* find(ID id, const std::type_info& type) noexcept;

  // The value in this slot; when the slot is empty, stores `value` first. A
  // value that is not stored is freed here.
  static void* findOrInsert(ID id, const std::type_info& type, ValuePtr value);

  // The value in this slot; raises "VANTEL:usm:NoValue" when it is empty.
  static void* findOrThrow(ID id, const std::type_info& type);

  // Stores `value`, replacing (and freeing) any value the slot held.
  static void* insert(ID id, const std::type_info& type, ValuePtr value);

  // Frees the slot's value; false when it was empty.
  static bool erase(ID id, const std::type_info& type);

  // True while an instance is current, which is always the case between
  // start-up and the end of the process.
  static bool isRequiredContextActive() noexcept;
};

}  // namespace foundation::usm
