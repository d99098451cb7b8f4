// Not installed; internal to the display methods of graphics objects.
//
// Every graphics array can mix classes, so an array counts as heterogeneous
// for a display only when a live element is not of the array's own class.
#pragma once

#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vx/vxQuery.h"

namespace sgutils::detail {

inline bool isHeterogeneousForDisplay(const vxArray* array) {
  if (!vxIsHeterogeneousArray(array)) return false;
  const COSClass* cls = vcos::array::classOf(array);
  for (vxSize i = 0, n = vxGetNumberOfElements(array); i < n; ++i)
    if (const COSInterfacePtr object = omGetLiveArrayElement(array, i))
      if (object->getClass() != cls) return true;
  return false;
}

}  // namespace sgutils::detail
