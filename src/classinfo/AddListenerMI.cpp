// The "addlistener" override of graphics arrays: one form per input shape,
// each a check over all elements and the inputs beyond the source.
#include "sgutils/classinfo/AddListenerBaseMI.h"

#include <string>
#include <vector>

#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/ObjectEvents.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vxCell.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace {

const COSID& addlistenerId() {
  static const COSID id("addlistener");
  return id;
}

bool isText(const vxArray* a) {
  return a && ((vxIsChar(a) && vxGetM(a) <= 1) || (vxIsString(a) && vxIsScalar(a)));
}

// An element that the base method would refuse as a source.
bool isUnusable(const COSInterfacePtr& object) {
  return !object || object->isDestroyed() || object->isBeingDestroyed();
}

bool hasProperty(const COSInterfacePtr& object, const std::string& name) {
  return !isUnusable(object) && object->findPropertyInfo(COSID(name.c_str())) != nullptr;
}

// One form of the call. The source is prhs[0]; `inputs` are the others.
class AddListenerForm {
 public:
  virtual ~AddListenerForm() = default;
  virtual const char* resultClass() const = 0;
  virtual bool check(const vxArray* source, const vxArray* const* inputs) const = 0;
};

// (source, event name, callback)
class AddListener3MI final : public AddListenerForm {
 public:
  const char* resultClass() const override { return "event.listener"; }
  bool check(const vxArray* source, const vxArray* const* inputs) const override {
    if (!isText(inputs[0])) return false;
    const COSID event(vxArrayToStdString(inputs[0]).c_str());
    for (std::size_t i = 0, n = vxGetNumberOfElements(source); i < n; ++i) {
      const COSInterfacePtr element = omGetArrayElement(source, i);
      if (isUnusable(element)) return false;
      COSClass* cls = element->getClass();
      if (cls->findEvent(event)) continue;
      const COSClassInfo* info = cls->getClassInfo();
      if (!vcos::isValidObjectEvent(event, info ? info->getConnectivity() : COSConnectTree)) return false;
    }
    return true;
  }
};

// (source, property name as text, property event, callback)
class AddListener4stringMI final : public AddListenerForm {
 public:
  const char* resultClass() const override { return "event.proplistener"; }
  bool check(const vxArray* source, const vxArray* const* inputs) const override {
    const std::string name = vxArrayToStdString(inputs[0]);
    for (std::size_t i = 0, n = vxGetNumberOfElements(source); i < n; ++i)
      if (!hasProperty(omGetArrayElement(source, i), name)) return false;
    return true;
  }
};

// (source, cell of property names, property event, callback)
class AddListener4cellMI final : public AddListenerForm {
 public:
  const char* resultClass() const override { return "event.proplistener"; }
  bool check(const vxArray* source, const vxArray* const* inputs) const override {
    const vxArray* cell = inputs[0];
    for (std::size_t c = 0, nc = vxGetNumberOfElements(cell); c < nc; ++c) {
      const vxArray* item = vxGetCell(cell, static_cast<vxIndex>(c));
      if (!isText(item)) return false;
      const std::string name = vxArrayToStdString(item);
      for (std::size_t i = 0, n = vxGetNumberOfElements(source); i < n; ++i)
        if (!hasProperty(omGetArrayElement(source, i), name)) return false;
    }
    return true;
  }
};

// (source, property objects, property event, callback)
class AddListener4MI final : public AddListenerForm {
 public:
  const char* resultClass() const override { return "event.proplistener"; }
  bool check(const vxArray* source, const vxArray* const* inputs) const override {
    const vxArray* properties = inputs[0];
    for (std::size_t p = 0, np = vxGetNumberOfElements(properties); p < np; ++p) {
      const COSInterfacePtr object = omGetArrayElement(properties, p);
      const COSPropInfo* property = object ? cosiToProp(object.get()) : nullptr;
      if (!property) return false;
      const std::string name = property->getName();
      for (std::size_t i = 0, n = vxGetNumberOfElements(source); i < n; ++i)
        if (!hasProperty(omGetArrayElement(source, i), name)) return false;
    }
    return true;
  }
};

// The form for these inputs, or null when none fits (the base method then
// reports what is wrong).
const AddListenerForm* formOf(int nrhs, const vxArray* const* prhs) {
  static const AddListener3MI three;
  static const AddListener4stringMI byText;
  static const AddListener4cellMI byCell;
  static const AddListener4MI byObjects;
  if (nrhs == 3) return &three;
  if (nrhs != 4) return nullptr;
  if (isText(prhs[1])) return &byText;
  if (vxIsCell(prhs[1])) return &byCell;
  if (omIsVCOS(prhs[1])) return &byObjects;
  return nullptr;
}

// Runs the method of class "handle" with these inputs and outputs.
void callBase(const COSClient* client, int nlhs, vxArray** plhs, int nrhs, const vxArray* const* prhs) {
  static const COSID handle("handle");
  omCallMethod(handle, addlistenerId(), client, nlhs, plhs, nrhs, prhs, /*dispatchOnObject=*/false);
}

}  // namespace

AddListenerBaseMI::AddListenerBaseMI(COSID classId)
    : COSMethodBase(classId, addlistenerId(), PublicAccess, "addlistener method override for the SGHandle subclasses.") {}

void AddListenerBaseMI::invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs,
                               const COSValue* prhs) const {
  std::vector<const vxArray*> in(static_cast<std::size_t>(nrhs));
  for (int i = 0; i < nrhs; ++i) in[static_cast<std::size_t>(i)] = prhs[i].asPointer<const vxArray>();
  const vxArray* source = nrhs > 0 ? in[0] : nullptr;
  const AddListenerForm* form = source && omIsVCOS(source) ? formOf(nrhs, in.data()) : nullptr;

  if (!form || !form->check(source, in.data() + 1)) {
    vxArray* out[1] = {nullptr};
    callBase(client, 1, out, nrhs, in.data());
    if (nlhs < 1) nlhs = 1;
    plhs[0] = COSValue(out[0]);
    return;
  }

  const std::size_t n = vxGetNumberOfElements(source);
  matrix::unique_vxArray result(omCreateVCOSMatrix(n, 1, form->resultClass()));
  std::vector<const vxArray*> one(in);
  for (std::size_t i = 0; i < n; ++i) {
    matrix::unique_vxArray element(omCreateVCOSScalar(omGetArrayElement(source, i)));
    one[0] = element.get();
    vxArray* out[1] = {nullptr};
    callBase(client, 1, out, nrhs, one.data());
    matrix::unique_vxArray listener(out[0]);
    if (listener && omIsVCOS(listener.get()) && vxGetNumberOfElements(listener.get()) == 1)
      omSetArrayElement(result.get(), i, omGetArrayElement(listener.get(), 0));
  }
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(result.release());
}
