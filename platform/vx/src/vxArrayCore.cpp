// The array header: class facts, shapes, copy-on-write, shared and deep
// copies, the header's own reference count, destruction and scope.
#include <cstring>
#include <new>

#include "CellPayload.h"
#include "NumericPayload.h"
#include "StructPayload.h"
#include "foundation/core/except/bad_alloc.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "SpareHeaderScope.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

namespace vx::impl {
namespace {

// Indexed by class id; the numbering is fixed by vxClassID.
constexpr ClassFacts kClassFacts[] = {
    {"unknown", 0, false, false},          // vxUNKNOWN_CLASS
    {"cell", 8, false, false},             // vxCELL_CLASS
    {"struct", 8, false, false},           // vxSTRUCT_CLASS
    {"logical", 1, false, true},           // vxLOGICAL_CLASS
    {"char", 2, false, true},              // vxCHAR_CLASS
    {"void", 0, false, false},             // vxVOID_CLASS
    {"double", 8, true, true},             // vxDOUBLE_CLASS
    {"single", 4, true, true},             // vxSINGLE_CLASS
    {"int8", 1, true, true},               // vxINT8_CLASS
    {"uint8", 1, true, true},              // vxUINT8_CLASS
    {"int16", 2, true, true},              // vxINT16_CLASS
    {"uint16", 2, true, true},             // vxUINT16_CLASS
    {"int32", 4, true, true},              // vxINT32_CLASS
    {"uint32", 4, true, true},             // vxUINT32_CLASS
    {"int64", 8, true, true},              // vxINT64_CLASS
    {"uint64", 8, true, true},             // vxUINT64_CLASS
    {"function_handle", 8, false, false},  // vxFUNCTION_CLASS
    {"opaque", 0, false, false},           // vxOPAQUE_CLASS
    {"object", 8, false, false},           // vxOBJECT_CLASS
    {"string", 8, false, false},           // vxSTRING_CLASS
};
static_assert(std::size(kClassFacts) == vxSTRING_CLASS + 1, "one row per class id");

static_assert(sizeof(vxArray) <= 56, "keep the array header small");

// Largest element count any array may have: keeps byte counts of complex
// doubles (16 bytes each) from overflowing.
constexpr vxSize kMaxElements = static_cast<vxSize>(-1) / 16;

// The room of the last header freed on this thread, kept for a header made
// while a SpareHeaderScope is open (see SpareHeaderScope.h). Plain data with
// a fixed model, so that reaching it costs no call; the room is given back
// at the thread's end by a guard made when the first room is kept, and
// nothing is kept after that.
struct SpareHeader {
  void* room;
  unsigned scopes;
  bool guarded;
  bool ended;
};
[[gnu::tls_model("initial-exec")]] thread_local SpareHeader spare{};

struct SpareHeaderGuard {
  ~SpareHeaderGuard() {
    spare.ended = true;
    ::operator delete(std::exchange(spare.room, nullptr));
  }
};

[[gnu::noinline]] void guardSpareHeader() noexcept {
  thread_local SpareHeaderGuard guard;
  (void)guard;
  spare.guarded = true;
}

}  // namespace

SpareHeaderScope::SpareHeaderScope() noexcept { ++spare.scopes; }
SpareHeaderScope::~SpareHeaderScope() { --spare.scopes; }

const ClassFacts& classFacts(vxClassID id) noexcept {
  assert(id >= 0 && id <= vxSTRING_CLASS && "class id out of range");
  return kClassFacts[id];
}

vxSize elementBytes(vxClassID id, bool complex) noexcept {
  return static_cast<vxSize>(classFacts(id).elementSize) * (complex ? 2 : 1);
}

Shape makeShape(vxSize ndim, const vxSize* dims) {
  assert((ndim == 0 || dims) && "dimensions missing");
  while (ndim > 2 && dims[ndim - 1] == 1) --ndim;  // trailing singletons
  Shape s;
  vxSize numel = 1;
  auto take = [&numel](vxSize d) {
    if (d != 0 && numel > kMaxElements / d) raiseSizeTooLarge();
    numel *= d;
  };
  if (ndim <= 2) {
    // One dimension n reads as n-by-1; none reads as 0-by-0.
    s.small[0] = ndim >= 1 ? dims[0] : 0;
    s.small[1] = ndim == 2 ? dims[1] : (ndim == 1 ? 1 : 0);
    take(s.small[0]);
    take(s.small[1]);
  } else {
    s.ndim = ndim;
    s.many = std::make_unique<vxSize[]>(ndim);
    for (vxSize i = 0; i < ndim; ++i) {
      s.many[i] = dims[i];
      take(dims[i]);
    }
  }
  s.numel = numel;
  return s;
}

Shape makeShape(vxSize m, vxSize n) {
  Shape s;
  s.small[0] = m;
  s.small[1] = n;
  if (m != 0 && n > kMaxElements / m) raiseSizeTooLarge();
  s.numel = m * n;
  return s;
}

void applyShape(vxArray& a, Shape&& shape) noexcept {
  a.ndim = static_cast<std::uint32_t>(shape.ndim);
  a.dims2[0] = shape.small[0];
  a.dims2[1] = shape.small[1];
  a.dimsN = std::move(shape.many);
}

vxSize numelOf(const vxArray& a) noexcept {
  const vxSize* d = a.dims();
  vxSize n = 1;
  for (vxSize i = 0; i < a.ndim; ++i) n *= d[i];
  return n;
}

namespace {

// An empty header: in the kept room while a SpareHeaderScope is open.
std::unique_ptr<vxArray> allocateHeader() {
  if (spare.scopes && spare.room) return std::unique_ptr<vxArray>(new (std::exchange(spare.room, nullptr)) vxArray());
  return std::make_unique<vxArray>();
}

}  // namespace

std::unique_ptr<vxArray> newHeader(vxClassID id, bool complex, Shape&& shape) {
  auto a = allocateHeader();
  a->classId = static_cast<std::uint8_t>(id);
  a->set(vxArray::kComplex, complex);
  applyShape(*a, std::move(shape));
  return a;
}

vxArray* createRaw(vxClassID id, bool complex, Shape&& shape) {
  if (!isRawStorage(id)) raiseNotNumericClass(id);
  const vxSize numel = shape.numel;
  const vxSize bytes = elementBytes(id, complex);
  try {
    auto a = newHeader(id, complex, std::move(shape));
    if (numel == 1 && bytes <= sizeof a->inline_)
      a->set(vxArray::kInline, true);
    else if (numel != 0)
      a->payload = NumericPayload::make(numel, bytes);
    return a.release();
  } catch (const std::bad_alloc&) {
    throw foundation::core::except::bad_alloc();
  }
}

void makeWritable(vxArray& a) {
  if (a.payload && a.payload->isShared()) a.payload = a.payload->clone(Payload::Depth::Shallow);
}

const void* rawData(const vxArray& a) noexcept {
  if (a.has(vxArray::kInline)) return a.inline_;
  if (!a.payload) return nullptr;
  return static_cast<const NumericPayload*>(a.payload.get())->data();
}

void* rawDataForWrite(vxArray& a) {
  makeWritable(a);
  return const_cast<void*>(rawData(a));
}

namespace {

std::unique_ptr<vxArray> copyHeader(const vxArray& a) {
  auto c = allocateHeader();
  c->ndim = a.ndim;
  c->classId = a.classId;
  c->flags = a.flags & (vxArray::kComplex | vxArray::kInline);
  c->dims2[0] = a.dims2[0];
  c->dims2[1] = a.dims2[1];
  if (a.ndim > 2) {
    c->dimsN = std::make_unique<vxSize[]>(a.ndim);
    std::memcpy(c->dimsN.get(), a.dimsN.get(), a.ndim * sizeof(vxSize));
  }
  std::memcpy(c->inline_, a.inline_, sizeof c->inline_);
  return c;
}

}  // namespace

vxArray* sharedCopy(const vxArray& a) {
  auto c = copyHeader(a);
  c->payload = a.payload;
  return c.release();
}

vxArray* deepCopy(const vxArray& a) {
  auto c = copyHeader(a);
  if (a.payload) c->payload = a.payload->clone(Payload::Depth::Deep);
  return c.release();
}

void adoptIntoContainer(vxArray* a) noexcept {
  if (!a) return;
  assert(!a->has(vxArray::kContained) && "array already belongs to a cell or struct");
  a->set(vxArray::kContained, true);
}

void releaseContained(vxArray* a) noexcept {
  if (!a) return;
  if (a->extraRefs > 0) {
    // Someone took a reference of their own: the array is now theirs alone.
    --a->extraRefs;
    a->set(vxArray::kContained, false);
    return;
  }
  delete a;
}

ElementRef shareElement(const ElementRef& e) {
  if (!e) return nullptr;
  ElementRef c(sharedCopy(*e));
  c->set(vxArray::kContained, true);
  return c;
}

ElementRef duplicateElement(const ElementRef& e) {
  if (!e) return nullptr;
  ElementRef c(deepCopy(*e));
  c->set(vxArray::kContained, true);
  return c;
}

}  // namespace vx::impl

using namespace vx::impl;

vxArray* vxCreateSharedDataCopy(const vxArray* source) {
  assert(source && "array required");
  return sharedCopy(*source);
}

vxArray* vxCreateSharedCopyNotOnArrayList(const vxArray* source) {
  assert(source && "array required");
  return sharedCopy(*source);
}

vxArray* vxDuplicateArray(const vxArray* source) {
  assert(source && "array required");
  return deepCopy(*source);
}

void vxUnshareShallow(vxArray* array) {
  assert(array && "array required");
  makeWritable(*array);
}

void vxDestroyArray(vxArray* array) {
  if (!array) return;
  if (array->extraRefs > 0) {
    --array->extraRefs;
    return;
  }
  // A cell or struct slot owns this array: destroying a borrowed element is
  // harmless, the container frees it when the slot is replaced or the
  // container goes.
  if (array->has(vxArray::kContained)) return;
  array->~vxArray();
  if (!spare.room && !spare.ended) {
    if (!spare.guarded) guardSpareHeader();
    spare.room = array;
  } else
    ::operator delete(array);
}

void vxSetArrayScope(vxArray* array, int scope) {
  assert(array && "array required");
  assert(scope >= 0 && scope <= 255 && "scope out of range");
  array->scope = static_cast<std::uint8_t>(scope);
}

int vxGetArrayScope(const vxArray* array) {
  assert(array && "array required");
  return array->scope;
}

bool vxHasCycleDetectionContents(const vxArray* array) {
  assert(array && "array required");
  switch (array->cls()) {
    case vxOBJECT_CLASS:
      return true;
    case vxCELL_CLASS:
    case vxSTRUCT_CLASS:
      return array->payload && array->payload->holdsObjects();
    default:
      return false;
  }
}

void intrusive_ptr_add_ref(vxArray* array) noexcept {
  assert(array && "array required");
  ++array->extraRefs;
}

void intrusive_ptr_release(vxArray* array) noexcept { vxDestroyArray(array); }

unsigned vxGetSharedCopyCount(const vxArray* array) noexcept {
  assert(array && "array required");
  return array->extraRefs;
}

namespace matrix {

void destroyArray(vxArray* array) noexcept { vxDestroyArray(array); }

namespace detail {

void vxDestroy_deleter::operator()(vxArray* array) const noexcept { vxDestroyArray(array); }
vxArray* do_deep_copy(const vxArray* array) { return vxDuplicateArray(array); }
vxArray* do_shared_copy(const vxArray* array) { return vxCreateSharedDataCopy(array); }

}  // namespace detail
}  // namespace matrix
