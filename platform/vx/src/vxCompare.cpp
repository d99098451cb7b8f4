// Equality of arrays: class, dimensions and elements. Nested cells and
// structs are compared through a list of pending pairs rather than by
// recursion, so values nested 100,000 deep compare on a small stack.
#include "vx/vxCompare.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "CellPayload.h"
#include "FunctionHandlePayload.h"
#include "ObjectPayload.h"
#include "StringPayload.h"
#include "StructPayload.h"
#include "vxArrayHeader.h"

using namespace vx::impl;

namespace {

// Element pairs still to compare.
using Pending = std::vector<std::pair<const vxArray*, const vxArray*>>;

bool sameShape(const vxArray& a, const vxArray& b) {
  return a.ndim == b.ndim && std::memcmp(a.dims(), b.dims(), a.ndim * sizeof(vxSize)) == 0;
}

template <class T>
bool equalFloats(const T* a, bool aComplex, const T* b, bool bComplex, vxSize numel, bool nanEqual) {
  auto same = [nanEqual](T x, T y) { return x == y || (nanEqual && x != x && y != y); };
  for (vxSize i = 0; i < numel; ++i) {
    const T ar = aComplex ? a[2 * i] : a[i];
    const T br = bComplex ? b[2 * i] : b[i];
    // A real array has imaginary parts of zero.
    const T ai = aComplex ? a[2 * i + 1] : T(0);
    const T bi = bComplex ? b[2 * i + 1] : T(0);
    if (!same(ar, br) || !same(ai, bi)) return false;
  }
  return true;
}

bool equalExact(const std::byte* a, bool aComplex, const std::byte* b, bool bComplex, vxSize numel, vxSize bytes) {
  if (aComplex == bComplex) return numel == 0 || std::memcmp(a, b, numel * bytes * (aComplex ? 2 : 1)) == 0;
  static constexpr std::byte kZero[8] = {};
  for (vxSize i = 0; i < numel; ++i) {
    const std::byte* ar = aComplex ? a + 2 * i * bytes : a + i * bytes;
    const std::byte* br = bComplex ? b + 2 * i * bytes : b + i * bytes;
    const std::byte* ai = aComplex ? ar + bytes : kZero;
    const std::byte* bi = bComplex ? br + bytes : kZero;
    if (std::memcmp(ar, br, bytes) != 0 || std::memcmp(ai, bi, bytes) != 0) return false;
  }
  return true;
}

bool equalRaw(const vxArray& a, const vxArray& b, bool nanEqual) {
  const vxSize numel = numelOf(a);
  const bool ac = a.has(vxArray::kComplex), bc = b.has(vxArray::kComplex);
  const void* pa = rawData(a);
  const void* pb = rawData(b);
  switch (a.cls()) {
    case vxDOUBLE_CLASS:
      return equalFloats(static_cast<const double*>(pa), ac, static_cast<const double*>(pb), bc, numel, nanEqual);
    case vxSINGLE_CLASS:
      return equalFloats(static_cast<const float*>(pa), ac, static_cast<const float*>(pb), bc, numel, nanEqual);
    default:
      return equalExact(static_cast<const std::byte*>(pa), ac, static_cast<const std::byte*>(pb), bc, numel,
                        classFacts(a.cls()).elementSize);
  }
}

void addElements(const std::vector<ElementRef>& a, const std::vector<ElementRef>& b, Pending& pending) {
  for (std::size_t i = 0; i < a.size(); ++i) pending.emplace_back(a[i].get(), b[i].get());
}

bool addStructs(const StructPayload& a, const StructPayload& b, Pending& pending) {
  if (a.fieldCount() != b.fieldCount()) return false;
  // Field order does not matter; names must match one to one.
  for (int i = 0; i < a.fieldCount(); ++i) {
    const int j = b.find(a.field(i).name.c_str());
    if (j < 0) return false;
    addElements(a.field(i).values, b.field(j).values, pending);
  }
  return true;
}

bool equalStrings(const StringPayload& a, const StringPayload& b, bool nanEqual) {
  for (std::size_t i = 0; i < a.strings.size(); ++i) {
    const auto& x = a.strings[i];
    const auto& y = b.strings[i];
    // A missing string is like NaN: equal to another only when asked.
    if (!x || !y) {
      if (x || y || !nanEqual) return false;
    } else if (*x != *y) {
      return false;
    }
  }
  return true;
}

bool isEmptyDouble(const vxArray* a) {
  return a->cls() == vxDOUBLE_CLASS && a->ndim == 2 && a->dims2[0] == 0 && a->dims2[1] == 0;
}

// Compares one pair; the elements of cells and structs join the list.
bool equalOne(const vxArray* a, const vxArray* b, bool nanEqual, Pending& pending) {
  // An unset cell or field reads as the empty double array.
  if (!a || !b) return a == b || isEmptyDouble(a ? a : b);
  if (a->classId != b->classId || !sameShape(*a, *b)) return false;
  if (isRawStorage(a->cls())) return equalRaw(*a, *b, nanEqual);
  const Payload* pa = a->payload.get();
  const Payload* pb = b->payload.get();
  switch (a->cls()) {
    case vxCELL_CLASS:
      addElements(static_cast<const CellPayload*>(pa)->cells, static_cast<const CellPayload*>(pb)->cells, pending);
      return true;
    case vxSTRUCT_CLASS:
      return addStructs(*static_cast<const StructPayload*>(pa), *static_cast<const StructPayload*>(pb), pending);
    case vxSTRING_CLASS:
      return equalStrings(*static_cast<const StringPayload*>(pa), *static_cast<const StringPayload*>(pb), nanEqual);
    case vxFUNCTION_CLASS:
      return static_cast<const FunctionHandlePayload*>(pa)->data == static_cast<const FunctionHandlePayload*>(pb)->data;
    case vxOBJECT_CLASS: {
      const auto& x = *static_cast<const ObjectPayload*>(pa);
      const auto& y = *static_cast<const ObjectPayload*>(pb);
      return x.classId == y.classId && x.elements == y.elements;  // by identity
    }
    default:
      return false;  // no other class can be created
  }
}

bool equalArrays(const vxArray* a, const vxArray* b, bool nanEqual) {
  Pending pending{{a, b}};
  while (!pending.empty()) {
    const auto [x, y] = pending.back();
    pending.pop_back();
    if (!equalOne(x, y, nanEqual, pending)) return false;
  }
  return true;
}

}  // namespace

bool vxAreMatricesEqualNanOptional(const vxArray* a, const vxArray* b, bool nanEqual) {
  assert(a && b && "arrays required");
  return equalArrays(a, b, nanEqual);
}
