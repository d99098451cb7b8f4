// The hand-written half of Root: the current figure (a live figure below
// the root, else empty) and CallbackObject (one object or none).
#include "sgutils/objects/Root.gen.h"

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgclasses {

namespace {
vxArray* objectOrEmpty(const COSInterfacePtr& object) {
  return object ? omCreateVCOSScalar(object) : vxCreateDoubleMatrix(0, 0, vxREAL);
}
}  // namespace

COSInterfacePtr Root::currentFigure() const {
  COSInterface* figure = currentFigure_.get();
  if (figure && !figure->isDestroyed() && !figure->isBeingDestroyed() && figure->getOwnerObject() == getCOSObject())
    return COSInterfacePtr(figure);
  return {};
}

COSValue Root::getCurrentFigureImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(objectOrEmpty(currentFigure()));
}

void Root::setCurrentFigureImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  const auto* array = value.asPointer<const vxArray>();
  if (!array || vxIsEmpty(array)) {
    currentFigure_.reset();
    return;
  }
  COSInterfacePtr figure = omIsVCOS(array) && vxGetNumberOfElements(array) == 1 ? omGetArrayElement(array, 0)
                                                                                  : COSInterfacePtr();
  if (!figure || !isOfClass(figure.get(), {kFigureClass}) || figure->getOwnerObject() != object)
    throw foundation::core::except::Error("VANTEL:sgclasses:NotAFigure");
  setCurrentFigure(figure);
}

COSValue Root::getCallbackObjectImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(objectOrEmpty(callbackObject_));
}

void Root::setCallbackObjectImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue value) {
  const auto* array = value.asPointer<const vxArray>();
  callbackObject_ = array && omIsVCOS(array) && !vxIsEmpty(array) ? omGetLiveArrayElement(array, 0) : COSInterfacePtr();
}

}  // namespace sgclasses
