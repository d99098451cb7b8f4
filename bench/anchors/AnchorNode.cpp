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
#include "vcos/COSPropT.h"
#include "vcos/ObjectArray.h"
#include "vx/matrix.h"
#include "vx/vxQuery.h"

namespace sgbench {

namespace {

const COSID& graphicsId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

struct AnchorHandle : SGHandle {};

const COSID& nodeId() {
  static const COSID id("sg2utils.AnchorNode");
  return id;
}

// Children: the raw children, newest first, as a column. Read only.
class AnchorChildrenPI final : public COSPropT {
 public:
  explicit AnchorChildrenPI(COSID classId)
      : COSPropT(classId, COSID("Children"), COSDataTypePtr("any"), COSValue(), PublicAccess, PublicAccess,
                 COSPropDefaultFlags) {}
  COSValue getValue(COSInterface* object) const override {
    std::size_t n = 0;
    for (COSInterface* c = object->getNewestChild(); c; c = c->getOlderSibling()) ++n;
    vxArray* out = omCreateVCOSMatrix(n, 1, nodeId());
    std::size_t i = 0;
    for (COSInterface* c = object->getNewestChild(); c; c = c->getOlderSibling())
      omSetArrayElement(out, i++, COSInterfacePtr(c));
    return COSValue(out);
  }
  void setValue(COSInterface*, COSValue) override {}
  void releaseValue(COSInterface*, COSValue value) const override { matrix::destroyArray(value.asPointer<vxArray>()); }
};

// Parent: the owner; setting it hooks the node below the given one.
class AnchorParentPI final : public COSPropT {
 public:
  explicit AnchorParentPI(COSID classId)
      : COSPropT(classId, COSID("Parent"), COSDataTypePtr("any"), COSValue(), PublicAccess, PublicAccess,
                 COSPropDefaultFlags) {}
  COSValue getValue(COSInterface* object) const override {
    COSInterface* owner = object->getOwnerObject();
    return COSValue(owner ? omCreateVCOSScalar(COSInterfacePtr(owner)) : omCreateVCOSEmpty(nodeId()));
  }
  void setValue(COSInterface* object, COSValue value) override {
    const auto* array = value.asPointer<const vxArray>();
    if (array && omIsVCOS(array) && vxGetNumberOfElements(array) == 1) omGetArrayElement(array, 0)->hookChild(object);
  }
  void releaseValue(COSInterface*, COSValue value) const override { matrix::destroyArray(value.asPointer<vxArray>()); }
};

class AnchorNodeInfo final : public BaseObjectCOSInfo, public SGHandleBlockFactory {
 public:
  const char* getName() const override { return "AnchorNode"; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    setClient(cls);
    cls->addSuperclass(graphicsId(), true, 0, 1);
    cls->addSuperclass(AnchorNodeData::classID(), false, 0, 1);
    cls->addMethod(new ObjectCtorMI<AnchorHandle, sgutils::PublicConstructorAccess>(cls->getID(), COSID(getName())));
    // What a copy of a subtree (W6) reads and sets.
    cls->addProperty(new AnchorChildrenPI(cls->getID()));
    cls->addProperty(new AnchorParentPI(cls->getID()));
  }
  SGHandle* createHandleBlock() const override { return new AnchorHandle; }
  void* allocateInstance(COSInterface* i) override { return i->getInstanceData(graphicsId()); }
  void deallocateInstance(COSInterface*, void*) override {}
  bool isSharedAnswerSkippable() const override { return true; }
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
