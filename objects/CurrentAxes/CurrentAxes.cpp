// The hand-written half of CurrentAxes: the walk up the tree that lets each
// container answer for the object below it, and the class's methods.
#include "sgutils/objects/CurrentAxes.gen.h"

#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/propinfos/PropInfoLookup.h"
#include "sgutils/tree/TreeWalks.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

namespace graphics::mixin {

namespace {

// The object of a 1-by-1 object array, else null.
COSInterfacePtr scalarObject(const vxArray* value) {
  if (!value || !omIsVCOS(value) || vxGetNumberOfElements(value) != 1) return {};
  return omGetLiveArrayElement(value, 0);
}

// The array form of an object for a method call: a 1-by-1 object array, or
// the empty array of the class kept for "no object".
vxArray* arrayOf(const COSInterfacePtr& object) {
  return object ? omCreateVCOSScalar(object) : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder");
}

CurrentAxes* blockOf(COSInterface* object) {
  void* slot = object->getInstanceData(CurrentAxes::classID());
  return slot ? static_cast<CurrentAxes*>(static_cast<SGReference*>(slot)) : nullptr;
}

void processCurrentObjectCandidateMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs,
                                         const COSValue* prhs) {
  if (nlhs >= 1) {
    const vxArray* candidate = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
    plhs[0] = COSValue(candidate ? vxCreateSharedCopyNotOnArrayList(candidate) : arrayOf(nullptr));
  }
  if (nlhs >= 2) {
    const vxArray* self = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
    plhs[1] = COSValue(self ? vxCreateSharedCopyNotOnArrayList(self) : arrayOf(nullptr));
  }
}

void getCurrentObjectAndAxesMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  static const COSID graphics("vantel.graphics.Graphics");
  std::pair<COSInterfacePtr, COSInterfacePtr> pair;
  const vxArray* start = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  if (COSInterfacePtr object = scalarObject(start); object && object->getClass()->isSubclassOf(graphics))
    pair = CurrentAxes::getCurrentObjectAndAxes(object);
  // An output asked for and not found is an empty array.
  if (nlhs >= 1) plhs[0] = COSValue(arrayOf(pair.first));
  if (nlhs >= 2) plhs[1] = COSValue(arrayOf(pair.second));
}

void isHoldSupportedMethod(const COSClient*, int& nlhs, COSValue* plhs, int, const COSValue*) {
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(CurrentAxes::isHoldSupported()));
}

void isHoldEnabledMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr self = scalarObject(nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr);
  CurrentAxes* block = self ? blockOf(self.get()) : nullptr;
  if (nlhs < 1) nlhs = 1;
  plhs[0] = COSValue(vxCreateLogicalScalar(block && block->isHoldEnabled()));
}

void setHoldStateMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  COSInterfacePtr self = scalarObject(nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr);
  const vxArray* state = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
  CurrentAxes* block = self ? blockOf(self.get()) : nullptr;
  if (block && state && !vxIsEmpty(state)) block->setHoldState(vxGetScalar(state) != 0);
}

void prepareForPlotMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  if (nlhs < 1) return;
  const vxArray* self = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  plhs[0] = COSValue(self ? vxCreateSharedCopyNotOnArrayList(self) : arrayOf(nullptr));
}

}  // namespace

void CurrentAxes::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "isHoldSupported", &isHoldSupportedMethod, {}, {"result"},
                          /*isStatic=*/true);
  sgutils::addMixinMethod(cls, classId, "isHoldEnabled", &isHoldEnabledMethod, {"object"}, {"result"});
  sgutils::addMixinMethod(cls, classId, "setHoldState", &setHoldStateMethod, {"object", "state"}, {});
  sgutils::addMixinMethod(cls, classId, "prepareForPlot", &prepareForPlotMethod, {"object"}, {"object"});
  sgutils::addMixinMethod(cls, classId, "processCurrentObjectCandidate", &processCurrentObjectCandidateMethod,
                          {"object", "candidate"}, {"object", "axes"});
  sgutils::addMixinMethod(cls, classId, "getCurrentObjectAndAxes", &getCurrentObjectAndAxesMethod, {"object"},
                          {"object", "axes"}, /*isStatic=*/true);
}

std::pair<COSInterfacePtr, COSInterfacePtr> CurrentAxes::getCurrentObjectAndAxes(const COSInterfacePtr& start) {
  std::pair<COSInterfacePtr, COSInterfacePtr> pair{start, nullptr};
  // The nearest container at or above `start`, then each above the last.
  const COSClass* containers = COSClass::getClass(classID());
  COSInterfacePtr container = sgutils::getAncestor(start, containers, /*useTreeLink=*/true);
  while (container && !container->isBeingDestroyed()) {
    if (CurrentAxes* block = blockOf(container.get())) pair = block->callProcessCurrentObjectCandidate(pair.first);
    if (container->isBeingDestroyed()) break;
    container = sgutils::getAncestor(sgutils::getParent(container, /*useTreeLink=*/true), containers, true);
  }
  return pair;
}

std::pair<COSInterfacePtr, COSInterfacePtr> CurrentAxes::callProcessCurrentObjectCandidate(
    const COSInterfacePtr& candidate) {
  COSInterfacePtr self = getCOSReference();
  if (!self) return {candidate, nullptr};
  COSClass* cls = self->getClass();
  static const std::string methodName("processCurrentObjectCandidate");
  COSClass* mine = getClassInstance();
  if (!mine || !sgutils::isMethodOverridden(*mine, *cls, methodName)) return {candidate, self};

  static const COSID method("processCurrentObjectCandidate");
  matrix::unique_vxArray selfArray(omCreateVCOSScalar(self)), candidateArray(arrayOf(candidate));
  const vxArray* inputs[] = {selfArray.get(), candidateArray.get()};
  vxArray* outputs[2] = {nullptr, nullptr};
  omCallMethod(cls->getID(), method, sgutils::privateClientOf(cls), 2, outputs, 2, inputs, /*dispatchOnObject=*/true);
  matrix::unique_vxArray first(outputs[0]), second(outputs[1]);
  auto elementOf = [](const vxArray* a) -> COSInterfacePtr {
    return a && omIsVCOS(a) && !vxIsEmpty(a) ? omGetArrayElement(a, 0) : nullptr;
  };
  return {elementOf(first.get()), elementOf(second.get())};
}

}  // namespace graphics::mixin
