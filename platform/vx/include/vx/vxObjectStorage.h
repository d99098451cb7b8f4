// Storage of object arrays, for the class-object system.
//
// The class-object system sits above the array runtime, so the runtime never
// calls it: it stores object elements and an opaque class id (an interned-id
// pointer of the class-object system), and asks the hooks that the
// class-object system installs at start-up for anything that needs class
// knowledge. Without hooks, an object array's class is named "object", is a
// kind of nothing else, and is not heterogeneous.
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

// Class knowledge that the class-object system lends to the array runtime.
// Each member may be null.
struct vxObjectHooks {
  // The full name of the class with this id.
  const char* (*className)(const void* classId) = nullptr;
  // True when the class is, or derives from, the class of that name.
  bool (*isA)(const void* classId, const char* className) = nullptr;
  // True when the class is a heterogeneous root or derives from one.
  bool (*isHeterogeneous)(const void* classId) = nullptr;
};

// Installs the hooks, replacing the previous set, which is returned so that a
// test can put it back.
VX_API vxObjectHooks vxSetObjectHooks(const vxObjectHooks& hooks);

// An array of null elements of that class; the caller fills the elements.
VX_API vxArray* vxCreateObjectArray(vxSize ndim, const vxSize* dims, const void* classId);
VX_API vxArray* vxCreateObjectMatrix(vxSize m, vxSize n, const void* classId);

// The elements, in storage order (vxGetNumberOfElements of them). The
// non-const form unshares first, so a write never shows through a copy.
VX_API const COSInterfacePtr* vxGetObjectElements(const vxArray* array);
VX_API COSInterfacePtr* vxGetObjectElements(vxArray* array);
// The element at `index` in storage order; null for a null array, an array
// of another class or an index past the end (the element itself may be an
// empty reference). Asks what vxIsObject, vxGetNumberOfElements and
// vxGetObjectElements would, in one call.
VX_API const COSInterfacePtr* vxGetObjectElementAt(const vxArray* array, vxSize index) noexcept;

VX_API const void* vxGetObjectClassID(const vxArray* array);
// Changes the class of the array (after its elements changed); unshares first.
VX_API void vxSetObjectClassID(vxArray* array, const void* classId);
