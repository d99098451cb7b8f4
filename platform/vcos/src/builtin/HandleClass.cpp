// The methods of class "handle": delete, isvalid, eq, ne, findobj and
// addlistener (an event of the sources, or property events of named
// properties).
#include "vcos/src/builtin/ClassMembers.h"

#include <string>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSEventInfo.h"
#include "vcos/COSPropInfo.h"
#include "vcos/Findobj.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/Callbacks.h"
#include "vcos/src/builtin/Listeners.h"
#include "vx/matrix.h"
#include "vx/vxCell.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

bool isTextArg(const vxArray* a) {
  return a && ((vxIsChar(a) && vxGetM(a) == 1) || (vxIsString(a) && vxIsScalar(a)));
}

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

std::vector<COSInterfacePtr> liveSources(const vxArray* handles) {
  if (!omIsVCOS(handles) || vxIsEmpty(handles)) throw Error("VANTEL:vcos:addlistener:NoSource");
  std::vector<COSInterfacePtr> sources;
  const COSInterfacePtr* e = vxGetObjectElements(handles);
  for (vxSize i = 0, n = vxGetNumberOfElements(handles); i < n; ++i) {
    if (!e[i] || e[i]->isDestroyed() || e[i]->isBeingDestroyed()) throw Error("VANTEL:vcos:InvalidHandle");
    sources.push_back(e[i]);
  }
  return sources;
}

bool listenAllowed(const COSClient* client, const COSEventInfo* event) {
  if (event->getListenAccess() == PublicAccess && !event->getExtendedListenAccess()) return true;
  // A non-public event admits the defining class's own client and, when
  // protected, its subclasses' clients.
  const COSClass* own = client ? client->getClass() : nullptr;
  if (!own) return false;
  if (event->getListenAccess() == PrivateAccess) return own == event->getDefiningClass();
  return own->isSubclassOf(event->getDefiningClass());
}

void checkCallback(const vxArray* callback) {
  if (!isCallback(callback)) throw Error("VANTEL:vcos:addlistener:BadCallback");
}

COSPropertyEvent propertyEventOf(const vxArray* name) {
  if (!isTextArg(name)) throw Error("VANTEL:vcos:addlistener:BadPropertyEvent", "");
  const std::string s = vxArrayToStdString(name);
  if (s == "PreSet") return COSPropertyEvent::PreSet;
  if (s == "PostSet") return COSPropertyEvent::PostSet;
  if (s == "PreGet") return COSPropertyEvent::PreGet;
  if (s == "PostGet") return COSPropertyEvent::PostGet;
  throw Error("VANTEL:vcos:addlistener:BadPropertyEvent", s);
}

// Property names from text, a cell of text, or an array of property objects.
std::vector<COSID> propertyNames(const vxArray* props) {
  std::vector<COSID> names;
  if (isTextArg(props)) {
    names.emplace_back(vxArrayToStdString(props));
  } else if (vxIsCell(props)) {
    for (vxSize i = 0, n = vxGetNumberOfElements(props); i < n; ++i) {
      const vxArray* c = vxGetCell(props, i);
      if (!isTextArg(c)) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
      names.emplace_back(vxArrayToStdString(c));
    }
  } else if (omIsVCOS(props)) {
    const COSInterfacePtr* e = vxGetObjectElements(props);
    for (vxSize i = 0, n = vxGetNumberOfElements(props); i < n; ++i) {
      const COSPropInfo* p = cosiToProp(e[i].get());
      if (!p) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
      names.push_back(p->getID());
    }
  } else {
    throw Error("VANTEL:vcos:addlistener:BadPropertyList");
  }
  if (names.empty()) throw Error("VANTEL:vcos:addlistener:BadPropertyList");
  return names;
}

void addlistenerMethod(const COSClient* client, int& nlhs, vxArray* plhs[], int nrhs, const vxArray* prhs[]) {
  if (nrhs != 3 && nrhs != 4) throw Error("VANTEL:vcos:addlistener:BadArguments");
  const std::vector<COSInterfacePtr> sources = liveSources(prhs[0]);
  AttachRequest request;
  if (nrhs == 3) {
    if (!isTextArg(prhs[1])) throw Error("VANTEL:vcos:addlistener:BadEventName");
    request.eventName = COSID(vxArrayToStdString(prhs[1]));
    for (const COSInterfacePtr& s : sources) {
      const COSEventInfo* event = s->getClass()->findEvent(request.eventName);
      if (!event) throw Error("VANTEL:vcos:addlistener:UnknownEvent", request.eventName.str(), s->getClass()->getName());
      if (!listenAllowed(client, event))
        throw Error("VANTEL:vcos:addlistener:EventAccessDenied", request.eventName.str(), s->getClass()->getName());
      request.attachments.push_back({s, nullptr});
    }
    request.callback = prhs[2];
  } else {
    request.propertyListener = true;
    const std::vector<COSID> names = propertyNames(prhs[1]);
    request.propertyEvent = propertyEventOf(prhs[2]);
    const bool getEvent =
        request.propertyEvent == COSPropertyEvent::PreGet || request.propertyEvent == COSPropertyEvent::PostGet;
    for (const COSInterfacePtr& s : sources) {
      for (COSID name : names) {
        const COSPropInfo* p = s->findPropertyInfo(name);
        if (!p) throw Error("VANTEL:vcos:addlistener:UnknownProperty", name.str(), s->getClass()->getName());
        if (!(getEvent ? p->isListenerGetAllowed() : p->isListenerSetAllowed()))
          throw Error("VANTEL:vcos:addlistener:PropertyNotObservable", p->getName(), vxArrayToStdString(prhs[2]));
        request.attachments.push_back({s, p});
      }
    }
    request.callback = prhs[3];
  }
  checkCallback(request.callback);
  COSInterfacePtr listener = attachListenerObject(request);
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
