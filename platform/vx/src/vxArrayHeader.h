// Not installed; internal to the array runtime.
//
// The layout of an array header and the helpers every part of the runtime
// shares: class facts, dimensions, copy-on-write, the ownership of elements
// held by cells and structs.
#pragma once

#include <cassert>
#include <cstdint>
#include <memory>

#include "Payload.h"
#include "vx/vxTypes.h"

// One array value as a caller holds it. The header is private to its holder;
// the payload may be shared with other headers. A 1-by-1 real numeric,
// logical or char value lives in `inline_` and has no payload at all, so such
// a scalar costs one allocation.
struct vxArray {
  enum Flag : std::uint8_t {
    kComplex = 1,
    kInline = 2,     // the single element lives in inline_
    kContained = 4,  // owned by a cell or struct slot
  };

  // References beyond the holder's own (intrusive_ptr_add_ref).
  std::uint32_t extraRefs = 0;
  std::uint32_t ndim = 2;
  std::uint8_t classId = vxDOUBLE_CLASS;
  std::uint8_t flags = 0;
  std::uint8_t scope = vxSCOPE_TEMPORARY;
  vxSize dims2[2] = {0, 0};
  // All dimensions when there are more than two; dims2 is then unused.
  std::unique_ptr<vxSize[]> dimsN;
  vx::impl::PayloadRef payload;
  alignas(8) unsigned char inline_[8] = {};

  bool has(Flag f) const noexcept { return (flags & f) != 0; }
  void set(Flag f, bool on) noexcept { flags = on ? (flags | f) : (flags & ~f); }
  vxClassID cls() const noexcept { return static_cast<vxClassID>(classId); }
  const vxSize* dims() const noexcept { return ndim > 2 ? dimsN.get() : dims2; }
};

namespace vx::impl {

// Facts of one class id.
struct ClassFacts {
  const char* name;
  std::uint8_t elementSize;  // bytes of one real element; 0 when not creatable
  bool numeric;
  bool rawStorage;  // elements are plain bytes (numeric, logical, char)
};
const ClassFacts& classFacts(vxClassID id) noexcept;
inline bool isRawStorage(vxClassID id) noexcept { return classFacts(id).rawStorage; }

// Dimensions after the rules every array follows: at least two, trailing
// singletons beyond the second dropped. Raises for a count that overflows.
struct Shape {
  vxSize ndim = 2;
  vxSize small[2] = {0, 0};
  std::unique_ptr<vxSize[]> many;  // when ndim > 2
  vxSize numel = 0;
  const vxSize* dims() const noexcept { return ndim > 2 ? many.get() : small; }
};
Shape makeShape(vxSize ndim, const vxSize* dims);
Shape makeShape(vxSize m, vxSize n);
void applyShape(vxArray& a, Shape&& shape) noexcept;
vxSize numelOf(const vxArray& a) noexcept;

// Bytes per element, complex parts included.
vxSize elementBytes(vxClassID id, bool complex) noexcept;

// A new header of that class and shape with no payload yet.
std::unique_ptr<vxArray> newHeader(vxClassID id, bool complex, Shape&& shape);
// A zero-filled numeric, logical or char array; inline when it is one small element.
vxArray* createRaw(vxClassID id, bool complex, Shape&& shape);

// Gives the array a payload of its own before a write.
void makeWritable(vxArray& a);

// Element storage of a raw-storage array (inline or in its payload).
const void* rawData(const vxArray& a) noexcept;
void* rawDataForWrite(vxArray& a);

// A new header that shares the payload (or copies the inline value).
vxArray* sharedCopy(const vxArray& a);
vxArray* deepCopy(const vxArray& a);

// Ends the reference a container slot holds on an element.
void releaseContained(vxArray* a) noexcept;
// Marks a value as owned by a container slot.
void adoptIntoContainer(vxArray* a) noexcept;

struct ContainedRelease {
  void operator()(vxArray* a) const noexcept { releaseContained(a); }
};
// What a cell or struct slot holds: an owned element, or null for empty.
using ElementRef = std::unique_ptr<vxArray, ContainedRelease>;
// A shared copy for a slot of a shallow payload copy; null stays null.
ElementRef shareElement(const ElementRef& e);
ElementRef duplicateElement(const ElementRef& e);

}  // namespace vx::impl
