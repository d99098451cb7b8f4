// Making graphics objects below a parent and finding the current ones.
#include "sgclasses/Objects.h"

#include <vector>

#include "foundation/core/except/Error.h"
#include "sgclasses/ClassNames.h"
#include "sgutils/objects/Figure.gen.h"
#include "sgutils/objects/Root.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClient.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vx.h"

namespace sgclasses {

COSInterfacePtr create(const char* className, const COSInterfacePtr& parent, std::span<const vxArray* const> pairs) {
  std::vector<const vxArray*> inputs;
  matrix::unique_vxArray parentName, parentValue;
  inputs.reserve(pairs.size() + 2);
  if (parent) {
    // Parent goes first, so the ancestors' defaults come before the caller's values.
    parentName.reset(vxCreateString("Parent"));
    parentValue.reset(omCreateVCOSScalar(parent));
    inputs.push_back(parentName.get());
    inputs.push_back(parentValue.get());
  }
  inputs.insert(inputs.end(), pairs.begin(), pairs.end());
  matrix::unique_vxArray made(omConstructObjectWithClient(className, static_cast<int>(inputs.size()), inputs.data(),
                                                          COSGetPublicClient()));
  return omGetArrayElement(made.get(), 0);
}

COSInterfacePtr currentFigure(bool make) {
  COSInterfacePtr top = root();
  COSInterfacePtr figure = sgutils::blockOf<Root>(top.get(), Root::classID())->currentFigure();
  if (!figure && make) figure = create(kFigureClass, top);
  return figure;
}

COSInterfacePtr currentAxes(bool make) {
  COSInterfacePtr figure = currentFigure(make);
  if (!figure) return {};
  COSInterfacePtr axes = sgutils::blockOf<Figure>(figure.get(), Figure::classID())->plotTarget();
  if (!axes && make) axes = create(kAxesClass, figure);
  return axes;
}

void makeCurrent(const COSInterfacePtr& object) {
  if (!object || object->isDestroyed()) throw foundation::core::except::Error("VANTEL:sg:DeletedObject");
  COSInterface* parent = object->getOwnerObject();
  if (isOfClass(object.get(), {kFigureClass}) && parent && isOfClass(parent, {kRootClass})) {
    sgutils::blockOf<Root>(parent, Root::classID())->setCurrentFigure(object);
  } else if (isOfClass(object.get(), {kAxesClass}) && parent && isOfClass(parent, {kFigureClass})) {
    sgutils::blockOf<Figure>(parent, Figure::classID())->setCurrentAxes(object);
    makeCurrent(COSInterfacePtr(parent));
  }
}

}  // namespace sgclasses
