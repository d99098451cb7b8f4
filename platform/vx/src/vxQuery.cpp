// Class and shape queries, and reshaping.
#include "vx/vxQuery.h"

#include <cstring>

#include "NumericPayload.h"
#include "ObjectPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"
#include "vxObjectHooksInternal.h"

using namespace vx::impl;

namespace {

// Class names that stand for a group of classes.
bool isInGroup(vxClassID id, const char* group) noexcept {
  if (std::strcmp(group, "numeric") == 0) return classFacts(id).numeric;
  if (std::strcmp(group, "float") == 0) return id == vxDOUBLE_CLASS || id == vxSINGLE_CLASS;
  if (std::strcmp(group, "integer") == 0) return id >= vxINT8_CLASS && id <= vxUINT64_CLASS;
  return false;
}

// Gives the array storage for a new element count; new elements are zero or empty.
void resizeStorage(vxArray& a, vxSize numel) {
  const vxClassID id = a.cls();
  if (id == vxFUNCTION_CLASS || (id == vxOBJECT_CLASS && !a.payload)) raiseReshapeChangesCount(a, numel);
  if (!isRawStorage(id)) {
    makeWritable(a);
    a.payload->resize(numel);
    return;
  }
  const vxSize bytes = elementBytes(id, a.has(vxArray::kComplex));
  const bool toInline = numel == 1 && bytes <= sizeof a.inline_;
  if (a.has(vxArray::kInline) || !a.payload) {
    // From one inline element or none: keep what fits.
    if (toInline) {  // an empty array growing to one zero element
      std::memset(a.inline_, 0, sizeof a.inline_);
      a.set(vxArray::kInline, true);
      return;
    }
    PayloadRef p;
    if (numel != 0) {
      p = NumericPayload::make(numel, bytes);
      if (a.has(vxArray::kInline)) std::memcpy(static_cast<NumericPayload*>(p.get())->data(), a.inline_, bytes);
    }
    a.payload = std::move(p);
    a.set(vxArray::kInline, false);
    return;
  }
  makeWritable(a);
  a.payload->resize(numel);
}

}  // namespace

vxClassID vxGetClassID(const vxArray* array) {
  assert(array && "array required");
  return array->cls();
}

const char* vxGetClassName(const vxArray* array) {
  assert(array && "array required");
  if (array->cls() == vxOBJECT_CLASS) {
    if (auto name = objectHooks().className) return name(objects(*array).classId);
  }
  return classFacts(array->cls()).name;
}

bool vxIsA(const vxArray* array, const char* className) {
  assert(array && className && "array and class name required");
  if (array->cls() == vxOBJECT_CLASS) {
    if (auto isA = objectHooks().isA) return isA(objects(*array).classId, className);
    return std::strcmp(vxGetClassName(array), className) == 0;
  }
  return std::strcmp(classFacts(array->cls()).name, className) == 0 || isInGroup(array->cls(), className);
}

bool vxIsDouble(const vxArray* array) { return vxGetClassID(array) == vxDOUBLE_CLASS; }
bool vxIsSingle(const vxArray* array) { return vxGetClassID(array) == vxSINGLE_CLASS; }
bool vxIsNumeric(const vxArray* array) { return classFacts(vxGetClassID(array)).numeric; }
bool vxIsInteger(const vxArray* array) {
  const vxClassID id = vxGetClassID(array);
  return id >= vxINT8_CLASS && id <= vxUINT64_CLASS;
}
bool vxIsComplex(const vxArray* array) {
  assert(array && "array required");
  return array->has(vxArray::kComplex);
}
bool vxIsLogical(const vxArray* array) { return vxGetClassID(array) == vxLOGICAL_CLASS; }
bool vxIsChar(const vxArray* array) { return vxGetClassID(array) == vxCHAR_CLASS; }
bool vxIsString(const vxArray* array) { return vxGetClassID(array) == vxSTRING_CLASS; }
bool vxIsCell(const vxArray* array) { return vxGetClassID(array) == vxCELL_CLASS; }
bool vxIsStruct(const vxArray* array) { return vxGetClassID(array) == vxSTRUCT_CLASS; }
bool vxIsFunctionHandle(const vxArray* array) { return vxGetClassID(array) == vxFUNCTION_CLASS; }
bool vxIsObject(const vxArray* array) { return vxGetClassID(array) == vxOBJECT_CLASS; }

bool vxIsEmpty(const vxArray* array) {
  assert(array && "array required");
  return numelOf(*array) == 0;
}

bool vxIsScalar(const vxArray* array) {
  assert(array && "array required");
  return array->ndim == 2 && array->dims2[0] == 1 && array->dims2[1] == 1;
}

bool vxIsVector(const vxArray* array) {
  assert(array && "array required");
  return array->ndim == 2 && (array->dims2[0] == 1 || array->dims2[1] == 1) && numelOf(*array) >= 1;
}

bool vxIsLogicalScalar(const vxArray* array) { return vxIsLogical(array) && vxIsScalar(array); }

bool vxGetLogicalScalar(const vxArray* array, bool* value) noexcept {
  if (!array || array->cls() != vxLOGICAL_CLASS || array->ndim != 2 || array->dims2[0] != 1 || array->dims2[1] != 1)
    return false;
  *value = *static_cast<const bool*>(rawData(*array));
  return true;
}

bool vxIsLogicalScalarTrue(const vxArray* array) {
  return vxIsLogicalScalar(array) && *static_cast<const bool*>(rawData(*array));
}

bool vxIsHeterogeneousArray(const vxArray* array) {
  assert(array && "array required");
  if (array->cls() != vxOBJECT_CLASS) return false;
  auto isHeterogeneous = objectHooks().isHeterogeneous;
  return isHeterogeneous && isHeterogeneous(objects(*array).classId);
}

vxSize vxGetM(const vxArray* array) {
  assert(array && "array required");
  return array->dims()[0];
}

vxSize vxGetN(const vxArray* array) {
  assert(array && "array required");
  const vxSize* d = array->dims();
  vxSize n = 1;
  for (vxSize i = 1; i < array->ndim; ++i) n *= d[i];
  return n;
}

vxSize vxGetNumberOfDimensions(const vxArray* array) {
  assert(array && "array required");
  return array->ndim;
}

const vxSize* vxGetDimensions(const vxArray* array) {
  assert(array && "array required");
  return array->dims();
}

vxSize vxGetNumberOfElements(const vxArray* array) {
  assert(array && "array required");
  return numelOf(*array);
}

vxSize vxGetElementSize(const vxArray* array) {
  assert(array && "array required");
  return elementBytes(array->cls(), array->has(vxArray::kComplex));
}

void vxSetDimensions(vxArray* array, const vxSize* dims, vxSize ndim) {
  assert(array && "array required");
  Shape shape = makeShape(ndim, dims);
  if (shape.numel != numelOf(*array)) resizeStorage(*array, shape.numel);
  applyShape(*array, std::move(shape));
}

void vxSetM(vxArray* array, vxSize m) {
  const vxSize dims[2] = {m, vxGetN(array)};
  vxSetDimensions(array, dims, 2);
}

void vxSetN(vxArray* array, vxSize n) {
  const vxSize dims[2] = {vxGetM(array), n};
  vxSetDimensions(array, dims, 2);
}
