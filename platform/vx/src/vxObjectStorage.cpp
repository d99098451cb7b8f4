// Object arrays: creation, element storage, class id, and the hooks through
// which the class-object system answers class questions.
#include "vx/vxObjectStorage.h"

#include "ObjectPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"
#include "vxObjectHooksInternal.h"

using namespace vx::impl;

namespace vx::impl {

vxObjectHooks& objectHooks() noexcept {
  static vxObjectHooks hooks;
  return hooks;
}

const ObjectPayload& objects(const vxArray& a) {
  if (a.cls() != vxOBJECT_CLASS) raiseWrongClass(a, "object");
  return *static_cast<const ObjectPayload*>(a.payload.get());
}

}  // namespace vx::impl

namespace {

ObjectPayload& objectsForWrite(vxArray& a) {
  objects(a);  // class check
  makeWritable(a);
  return *static_cast<ObjectPayload*>(a.payload.get());
}

}  // namespace

vxObjectHooks vxSetObjectHooks(const vxObjectHooks& hooks) {
  vxObjectHooks old = objectHooks();
  objectHooks() = hooks;
  return old;
}

vxArray* vxCreateObjectArray(vxSize ndim, const vxSize* dims, const void* classId) {
  Shape shape = makeShape(ndim, dims);
  auto payload = makePayload<ObjectPayload>(shape.numel, classId);
  auto a = newHeader(vxOBJECT_CLASS, false, std::move(shape));
  a->payload = std::move(payload);
  return a.release();
}

vxArray* vxCreateObjectMatrix(vxSize m, vxSize n, const void* classId) {
  const vxSize dims[2] = {m, n};
  return vxCreateObjectArray(2, dims, classId);
}

const COSInterfacePtr* vxGetObjectElements(const vxArray* array) {
  assert(array && "array required");
  return objects(*array).elements.data();
}

const COSInterfacePtr* vxGetObjectElementAt(const vxArray* array, vxSize index) noexcept {
  if (!array || array->cls() != vxOBJECT_CLASS || !array->payload) return nullptr;
  const vxSize n = array->ndim == 2 ? array->dims2[0] * array->dims2[1] : numelOf(*array);
  if (index >= n) return nullptr;
  return static_cast<const ObjectPayload*>(array->payload.get())->elements.data() + index;
}

COSInterfacePtr* vxGetObjectElements(vxArray* array) {
  assert(array && "array required");
  return objectsForWrite(*array).elements.data();
}

const void* vxGetObjectClassID(const vxArray* array) {
  assert(array && "array required");
  return objects(*array).classId;
}

void vxSetObjectClassID(vxArray* array, const void* classId) {
  assert(array && "array required");
  if (objects(*array).classId == classId) return;
  objectsForWrite(*array).classId = classId;
}
