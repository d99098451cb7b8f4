// The hand-written half of Focusable: the two questions and their methods.
#include "sgutils/objects/Focusable.gen.h"

#include "sgutils/objects/MixinMethod.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace graphics::mixin {

vxArray* Focusable::getFocusableChildren(COSInterface*) { return nullptr; }

vxArray* Focusable::getFocusableParent(COSInterface*) { return nullptr; }

namespace {

Focusable* focusableOf(int nrhs, const COSValue* prhs, COSInterfacePtr& object) {
  if (nrhs < 1) return nullptr;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return nullptr;
  object = omGetLiveArrayElement(self, 0);
  void* slot = object ? object->getInstanceData(Focusable::classID()) : nullptr;
  return slot ? static_cast<Focusable*>(static_cast<SGReference*>(slot)) : nullptr;
}

// A null answer reaches the language as an empty array.
COSValue answer(vxArray* result) { return COSValue(result ? result : vxCreateDoubleMatrix(0, 0, vxREAL)); }

void focusableChildrenMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Focusable* block = focusableOf(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = answer(block ? block->getFocusableChildren(object.get()) : nullptr);
}

void focusableParentMethod(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  COSInterfacePtr object;
  Focusable* block = focusableOf(nrhs, prhs, object);
  nlhs = 1;
  plhs[0] = answer(block ? block->getFocusableParent(object.get()) : nullptr);
}

}  // namespace

void Focusable::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "getFocusableChildren", &focusableChildrenMethod, {"object"}, {"children"});
  sgutils::addMixinMethod(cls, classId, "getFocusableParent", &focusableParentMethod, {"object"}, {"parent"});
}

}  // namespace graphics::mixin
