// The concrete node class: its Graphics block is a plain SGHandle subclass,
// made through the class info as every concrete class of the library does.
#include "AnchorNode.h"

#include "foundation/graphicsstate/GraphicsState.h"
#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/startup/Namespaces.h"
#include "sgutils/lifecycle/ObjectCtorMI.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/classinfo/SGHandleClassInfo.h"
#include "sgutils/sgutils.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSPackage.h"

namespace sgbench {

namespace {

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

struct AnchorHandle : SGHandle {};

class AnchorNodeInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "AnchorNode"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(AnchorNodeData::classID(), false, 0, 1);
    cls->addMethod(new ObjectCtorMI<AnchorHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
  }
  SGHandle* createHandleBlock() const override { return new AnchorHandle; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
};

}  // namespace

COSClass* anchorNodeClass() {
  static COSClass* cls = [] {
    // The node is no class of the library, so it is not on the closed list
    // of Graphics' subclasses.
    GraphicsState::setSgSealGraphicsClasses(false);
    VLInitialize_sgutils();
    sgutils::generated::registerAnchorNodeData();
    sgutils::getNamespace()->addClass(new AnchorNodeInfo, 0, 2);
    return COSClass::getClass(COSID("sg2utils.AnchorNode"));
  }();
  return cls;
}

COSInterfacePtr newAnchorNode() { return anchorNodeClass()->createInstance(COSGetPublicClient()); }

AnchorNodeData& nodeData(COSInterface* node) {
  return *static_cast<AnchorNodeData*>(static_cast<SGReference*>(node->getInstanceData(AnchorNodeData::classID())));
}

}  // namespace sgbench
