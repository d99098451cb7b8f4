// The hand-written half of Figure: its number, taken when it joins the
// root, and the current axes and object (live children, else empty).
#include "sgutils/objects/Figure.gen.h"

#include <set>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/objects/CurrentAxes.gen.h"
#include "sgutils/objects/MixinMethod.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/objects/ThemeContainer.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSIterator.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgclasses {

using foundation::core::except::Error;

namespace {

vxArray* objectOrEmpty(const COSInterfacePtr& object) {
  return object ? omCreateVCOSScalar(object) : vxCreateDoubleMatrix(0, 0, vxREAL);
}

// The object a value names: one element of an object array, or null for empty.
COSInterfacePtr objectIn(COSValue value) {
  const auto* array = value.asPointer<const vxArray>();
  if (!array || vxIsEmpty(array)) return {};
  if (!omIsVCOS(array) || vxGetNumberOfElements(array) != 1) throw Error("VANTEL:sgclasses:NotAnObject");
  return omGetLiveArrayElement(array, 0);
}

bool isLiveBelow(const COSInterface* object, const COSInterface* ancestor) {
  if (!object || object->isDestroyed() || object->isBeingDestroyed()) return false;
  for (const COSInterface* up = object->getOwnerObject(); up; up = up->getOwnerObject())
    if (up == ancestor) return true;
  return false;
}

vxArray* objectOrPlaceholder(const COSInterfacePtr& object) {
  return object ? omCreateVCOSScalar(object) : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder");
}

// The figure's answer in the CurrentAxes walk: the candidate stays, the axes
// is the figure's current axes (empty when it has none).
void processCurrentObjectCandidate(const COSClient*, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  const vxArray* self = nrhs > 0 ? prhs[0].asPointer<const vxArray>() : nullptr;
  COSInterfacePtr figure = self && omIsVCOS(self) && vxGetNumberOfElements(self) == 1 ? omGetLiveArrayElement(self, 0)
                                                                                      : COSInterfacePtr();
  Figure* block = figure ? sgutils::blockOf<Figure>(figure.get(), Figure::classID()) : nullptr;
  if (nlhs >= 1) {
    const vxArray* candidate = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
    plhs[0] = COSValue(candidate ? vxCreateSharedCopyNotOnArrayList(candidate) : objectOrPlaceholder(nullptr));
  }
  if (nlhs >= 2) plhs[1] = COSValue(objectOrPlaceholder(block ? block->currentAxes() : COSInterfacePtr()));
}

}  // namespace

void Figure::addOwnMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "processCurrentObjectCandidate", &processCurrentObjectCandidate,
                          {"object", "candidate"}, {"object", "axes"});
}

void Figure::setupThemeContainer(COSInterfacePtr object) {
  // Its ThemeChangedFcn listens to ThemeChanged from here on.
  if (graphics::mixin::ThemeContainer* container = graphics::mixin::ThemeContainer::fromObject(object.get()))
    container->attachGeneratedCallbacks(object);
}

COSInterfacePtr Figure::plotTarget() const {
  COSInterfacePtr self = getCOSReference();
  return self ? graphics::mixin::CurrentAxes::getCurrentObjectAndAxes(self).second : COSInterfacePtr();
}

bool Figure::acceptsParent(COSInterface* parent) const { return isOfClass(parent, {kRootClass}); }

void Figure::parentChanged(COSInterface* object, COSInterface* parent) {
  // The lowest positive integer that no other figure of the root holds.
  std::set<double> taken;
  for (COSInterface* child = parent->getNewestChild(); child; child = child->getOlderSibling()) {
    if (child == object || !isOfClass(child, {kFigureClass})) continue;
    taken.insert(sgutils::blockOf<Figure>(child, classID())->getNumber());
  }
  double number = 1;
  while (taken.count(number)) ++number;
  number_ = number;
  if (Root* root = sgutils::blockOf<Root>(parent, Root::classID())) root->setCurrentFigure(COSInterfacePtr(object));
  // A new figure in automatic ThemeMode takes the theme the settings give.
  if (graphics::mixin::ThemeContainer* container = graphics::mixin::ThemeContainer::fromObject(object))
    container->respondToThemePreferences();
}

COSInterfacePtr Figure::currentAxes() const {
  return isLiveBelow(currentAxes_.get(), getCOSObject()) ? COSInterfacePtr(currentAxes_.get()) : COSInterfacePtr();
}

COSValue Figure::getCurrentAxesImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  return COSValue(objectOrEmpty(plotTarget()));
}

void Figure::setCurrentAxesImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  COSInterfacePtr axes = objectIn(value);
  if (axes && (!isOfClass(axes.get(), {kAxesClass}) || !isLiveBelow(axes.get(), object)))
    throw Error("VANTEL:sgclasses:NotAxesOfFigure");
  setCurrentAxes(axes);
}

COSValue Figure::getCurrentObjectImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  const COSInterface* current = currentObject_.get();
  return COSValue(objectOrEmpty(isLiveBelow(current, getCOSObject()) ? COSInterfacePtr(currentObject_.get())
                                                                      : COSInterfacePtr()));
}

void Figure::setCurrentObjectImpl(COSPropInfo*, const COSClient*, COSInterface* object, COSValue value) {
  COSInterfacePtr current = objectIn(value);
  if (current && !isLiveBelow(current.get(), object)) throw Error("VANTEL:sgclasses:NotInFigure");
  setCurrentObject(current);
}

}  // namespace sgclasses
