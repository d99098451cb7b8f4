// How a value kept in a PropertyStorage maps onto the one-word COSValue:
// flags are the word itself, one-byte enumerations a pointer to a byte of the
// same value, strings and value classes a pointer to the stored C++ value,
// arrays the vxArray* (copied and destroyed through the data type). `word`
// gives a borrowed word; `assign` copies a word into the storage.
#pragma once

#include <string>
#include <type_traits>

#include "sgdatatypes/Enumeration.h"
#include "vcos/COSDataType.h"
#include "vx/vxTypes.h"

namespace sgutils {

template <class T, class Enable = void>
struct StorageTraits {
  // A value class: the word points at the stored value; a null word is the
  // class's default value.
  static COSValue word(const T& v) noexcept { return COSValue(&v); }
  static void assign(T& v, COSValue w, const COSDataType&) { v = w.isEmpty() ? T() : *w.asPointer<const T>(); }
  static void destroy(T&, const COSDataType&) noexcept {}
  static constexpr bool holdsArrays = false;
};

template <>
struct StorageTraits<bool> {
  static COSValue word(bool v) noexcept { return COSValue::fromBool(v); }
  static void assign(bool& v, COSValue w, const COSDataType&) noexcept { v = w.asBool(); }
  static void destroy(bool&, const COSDataType&) noexcept {}
  static constexpr bool holdsArrays = false;
};

template <class E>
struct StorageTraits<E, std::enable_if_t<std::is_enum_v<E> && sizeof(E) == 1>> {
  static COSValue word(E v) noexcept {
    return COSValue(graphics::datatype::canonicalEnumerationByte(static_cast<unsigned char>(v)));
  }
  static void assign(E& v, COSValue w, const COSDataType&) noexcept {
    v = w.isEmpty() ? E() : static_cast<E>(*w.asPointer<const unsigned char>());
  }
  static void destroy(E&, const COSDataType&) noexcept {}
  static constexpr bool holdsArrays = false;
};

template <>
struct StorageTraits<vxArray*> {
  static COSValue word(vxArray* v) noexcept { return COSValue(v); }
  static void assign(vxArray*& v, COSValue w, const COSDataType& type) {
    // Copy first: a failed copy leaves the old array in place.
    COSValue copy = type.copy(w);
    type.destroy(COSValue(v));
    v = copy.asPointer<vxArray>();
  }
  static void destroy(vxArray*& v, const COSDataType& type) noexcept {
    type.destroy(COSValue(v));
    v = nullptr;
  }
  static constexpr bool holdsArrays = true;
};

}  // namespace sgutils
