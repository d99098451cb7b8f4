// A class-system object that counts its live instances, so tests can see
// when arrays keep objects alive and when they let them go.
#pragma once

#include <vcos/COSInterfacePtr.h>
#include <vx/vxObjectStorage.h>

class CountedObject : public COSInterface {
 public:
  CountedObject() { ++live; }
  static inline int live = 0;

  // A 1-by-n object array of new objects.
  static vxArray* makeArray(vxSize n, const void* classId = &live) {
    vxArray* a = vxCreateObjectMatrix(1, n, classId);
    COSInterfacePtr* elements = vxGetObjectElements(a);
    for (vxSize i = 0; i < n; ++i) elements[i] = COSInterfacePtr(new CountedObject);
    return a;
  }

 protected:
  ~CountedObject() override { --live; }
};
