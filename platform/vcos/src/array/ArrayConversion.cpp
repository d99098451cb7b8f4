// Switching the object references of an array, at every depth, between
// strong (internal form) and weak (external form). Containers are unshared
// one level at a time and their converted elements put back, so a copy that
// shared the payload never sees the change.
#include "vcos/ArrayConversion.h"

#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

namespace {

void convert(vxArray* array, int referenceType);

// A converted replacement for a container element, or null when the element
// holds no objects.
vxArray* convertedCopy(const vxArray* element, int referenceType) {
  if (!element || !vxHasCycleDetectionContents(element)) return nullptr;
  vxArray* copy = vxCreateSharedDataCopy(element);
  convert(copy, referenceType);
  return copy;
}

void convert(vxArray* array, int referenceType) {
  if (!array || !vxHasCycleDetectionContents(array)) return;
  const vxSize n = vxGetNumberOfElements(array);
  if (vxIsObject(array)) {
    COSInterfacePtr* elements = vxGetObjectElements(array);  // unshares
    for (vxSize i = 0; i < n; ++i) {
      COSInterfacePtr& e = elements[i];
      if (!e) continue;
      // A deleted shell is never held strongly again.
      e.setReferenceType(e->isDestroyed() ? COSWeakReference : referenceType);
    }
  } else if (vxIsCell(array)) {
    vxUnshareShallow(array);
    for (vxSize i = 0; i < n; ++i)
      if (vxArray* c = convertedCopy(vxGetCell(array, i), referenceType)) vxSetCell(array, i, c);
  } else if (vxIsStruct(array)) {
    vxUnshareShallow(array);
    const int fields = vxGetNumberOfFields(array);
    for (vxSize i = 0; i < n; ++i)
      for (int f = 0; f < fields; ++f)
        if (vxArray* c = convertedCopy(vxGetFieldByNumber(array, i, f), referenceType))
          vxSetFieldByNumber(array, i, f, c);
  }
}

}  // namespace

vxArray* vcosConvertArrayToExternal(const vxArray* array) {
  if (!array) return nullptr;
  vxArray* copy = vxCreateSharedDataCopy(array);
  convert(copy, COSWeakReference);
  return copy;
}

void vcosConvertArrayToExternalInPlace(vxArray* array, bool /*reserved*/) { convert(array, COSWeakReference); }

vxArray* vcosConvertArrayToInternal(vxArray* array, bool copy) {
  if (!array) return nullptr;
  vxArray* target = copy ? vxCreateSharedDataCopy(array) : array;
  convert(target, COSStrongReference);
  return target;
}
