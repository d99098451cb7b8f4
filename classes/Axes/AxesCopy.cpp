// The copy of an axes: the default copy, then the values of the source's
// title onto the title that the new axes made for itself.
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
    const COSInterfacePtr sourceTitle = sgutils::blockOf<Axes>(source.get(), Axes::classID())->title();
    const COSInterfacePtr copyTitle = sgutils::blockOf<Axes>(copy.get(), Axes::classID())->title();
    if (sourceTitle && copyTitle && !sourceTitle->isDestroyed() && !copyTitle->isDestroyed())
      sgutils::Copyable::copyValueProperties(sourceTitle, copyTitle, client);
  }
};

}  // namespace

void Axes::addMethods(COSClass* cls, COSID classId) {
  cls->addMethod(new AxesCopyElementMI(classId));
  addChildrenMethod(cls, classId);
}

}  // namespace sgclasses
