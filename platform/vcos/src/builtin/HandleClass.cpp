// The methods of class "handle": delete, isvalid, eq, ne, findobj and
// addlistener (an event of the sources, or property events of named
// properties).
#include "vcos/src/builtin/ClassMembers.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/Findobj.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/Listeners.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

const COSInterfacePtr* objectsOf(const vxArray* a) { return omIsVCOS(a) ? vxGetObjectElements(a) : nullptr; }

void deleteMethod(const COSClient* client, int&, vxArray*[], int, const vxArray* prhs[]) {
  if (!omIsVCOS(prhs[0])) throw Error("VANTEL:vcos:InvalidHandle");
  // Strong copies first: deleting one object may release others.
  const vxSize n = vxGetNumberOfElements(prhs[0]);
  std::vector<COSInterfacePtr> objects(objectsOf(prhs[0]), objectsOf(prhs[0]) + n);
  for (COSInterfacePtr& o : objects)
    if (o && !o->isDestroyed() && !o->isBeingDestroyed()) o->deleteObject(client);
}

void isvalidMethod(const COSClient*, int& nlhs, vxArray* plhs[], int, const vxArray* prhs[]) {
  const vxArray* a = prhs[0];
  matrix::unique_vxArray result(vxCreateLogicalArray(vxGetNumberOfDimensions(a), vxGetDimensions(a)));
  if (const COSInterfacePtr* e = objectsOf(a)) {
    bool* out = vxGetLogicals(result.get());
    for (vxSize i = 0, n = vxGetNumberOfElements(a); i < n; ++i) out[i] = e[i] && !e[i]->isDestroyed();
  }
  plhs[0] = result.release();
  nlhs = 1;
}

bool sameDimensions(const vxArray* a, const vxArray* b) {
  const vxSize n = vxGetNumberOfDimensions(a);
  if (n != vxGetNumberOfDimensions(b)) return false;
  for (vxSize i = 0; i < n; ++i)
    if (vxGetDimensions(a)[i] != vxGetDimensions(b)[i]) return false;
  return true;
}

// Element-wise identity, with a scalar side expanded. A side that is not an
// object array equals nothing.
void compareHandles(int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[], bool equal) {
  if (nrhs != 2) throw Error("VANTEL:vcos:BadArgumentCount", 2);
  const vxArray* a = prhs[0];
  const vxArray* b = prhs[1];
  const vxSize na = vxGetNumberOfElements(a), nb = vxGetNumberOfElements(b);
  const vxArray* shape = na == 1 ? b : a;
  if (na != 1 && nb != 1 && !sameDimensions(a, b)) throw Error("VANTEL:vcos:DimensionMismatch");
  matrix::unique_vxArray result(vxCreateLogicalArray(vxGetNumberOfDimensions(shape), vxGetDimensions(shape)));
  bool* out = vxGetLogicals(result.get());
  const COSInterfacePtr* ea = objectsOf(a);
  const COSInterfacePtr* eb = objectsOf(b);
  for (vxSize i = 0, n = vxGetNumberOfElements(shape); i < n; ++i) {
    const bool same = ea && eb && ea[na == 1 ? 0 : i].get() == eb[nb == 1 ? 0 : i].get();
    out[i] = same == equal;
  }
  plhs[0] = result.release();
  nlhs = 1;
}

void eqMethod(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  compareHandles(nlhs, plhs, nrhs, prhs, true);
}
void neMethod(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  compareHandles(nlhs, plhs, nrhs, prhs, false);
}

void findobjMethod(const COSClient*, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  plhs[0] = vcos::findobj(prhs[0], nrhs - 1, prhs + 1);
  nlhs = 1;
}

// ---- addlistener -----------------------------------------------------------

// The listener object comes from the constructor of "event.listener" or
// "event.proplistener" with the same inputs; then its sources hold it.
void addlistenerMethod(const COSClient* client, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  COSInterfacePtr listener = constructListenerObject(client, nrhs, prhs);
  keepWithSources(listener);
  plhs[0] = omCreateVCOSScalar(listener);
  nlhs = 1;
}

constexpr Method::Row kHandleMethods[] = {
    {"delete", &deleteMethod, "Deletes the objects of the array.", 1, 1, 0, false},
    {"isvalid", &isvalidMethod, "True for each element that is not deleted.", 1, 1, 1, false},
    {"eq", &eqMethod, "True where both arrays hold the same object.", 2, 2, 1, false},
    {"ne", &neMethod, "True where the arrays hold different objects.", 2, 2, 1, false},
    {"findobj", &findobjMethod, "Objects of the array and their descendants that pass the conditions.", 1, -1, 1,
     false},
    {"addlistener", &addlistenerMethod, "Listens to an event, or to property events of named properties.", 3, 4, 1,
     false},
};

}  // namespace

void addHandleMembers(COSClass* cls) { Method::addAll(cls, kHandleMethods); }

}  // namespace vcos::builtin
