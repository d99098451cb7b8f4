// The copy of an axes: the default copy, then the values of the source's
// title and labels onto those that the new axes made for itself.
#include <utility>

#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableMethod.h"
#include "sgutils/objects/Axes.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vcos/ObjectArray.h"

namespace sgclasses {
namespace {

class AxesCopyElementMI final : public sgutils::CopyableSubclassCopyElementMI {
 public:
  using CopyableSubclassCopyElementMI::CopyableSubclassCopyElementMI;
  void invoke(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) const override {
    invokeDefaultImpl(client, nlhs, plhs, nrhs, prhs);
    const COSInterfacePtr source = omGetLiveArrayElement(prhs[0].asPointer<const vxArray>(), 0);
    const COSInterfacePtr copy = omGetLiveArrayElement(plhs[0].asPointer<const vxArray>(), 0);
    if (!source || !copy) return;
    Axes* from = sgutils::blockOf<Axes>(source.get(), Axes::classID());
    Axes* to = sgutils::blockOf<Axes>(copy.get(), Axes::classID());
    // A label is made in the copy only where the source has one.
    std::pair<COSInterfacePtr, COSInterfacePtr> texts[] = {{from->title(), to->title()}, {}, {}};
    for (int axis = 0; axis < 2; ++axis)
      if (COSInterfacePtr sourceLabel = from->label(source.get(), axis, false))
        texts[axis + 1] = {sourceLabel, to->label(copy.get(), axis, true)};
    for (const auto& [sourceText, copyText] : texts)
      if (sourceText && copyText && !sourceText->isDestroyed() && !copyText->isDestroyed())
        sgutils::Copyable::copyValueProperties(sourceText, copyText, client);
  }
};

}  // namespace

void Axes::addMethods(COSClass* cls, COSID classId) {
  cls->addMethod(new AxesCopyElementMI(classId));
  addChildrenMethod(cls, classId);
}

}  // namespace sgclasses
