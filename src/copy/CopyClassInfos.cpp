// Class registrations of "vantel.graphics.internal.CopyContext" and
// "vantel.graphics.mixin.internal.Copyable".
#include <new>

#include "sgutils/copy/Copyable.h"
#include "sgutils/copy/CopyableMethod.h"
#include "sgutils/copy/CopyContextImpl.h"
#include "src/classinfo/SupportClasses.h"
#include "src/copy/CopyAccess.h"
#include "src/copy/CopyClient.h"
#include "src/copy/ObjectArgumentType.h"
#include "src/copy/CopyElement.h"
#include "src/lifecycle/BlockPool.h"
#include "vcos/AbstractClassInfo.h"
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSDataTypePtr.h"
#include "vcos/COSMethodSignature.h"
#include "vcos/COSPropT.h"
#include "vcos/ObjectArray.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"

namespace sgutils {
namespace copy {
namespace {
const COSClient* gContextClient = nullptr;
}
const COSClient* contextClient() noexcept { return gContextClient; }
void setContextClient(const COSClient* client) noexcept { gContextClient = client; }
}  // namespace copy

namespace {

// DestinationParent and CopySources: read-only views of the context.
class CopyContextPropPI final : public COSPropT {
 public:
  using Getter = const vxArray* (CopyContext::*)() const;
  CopyContextPropPI(COSID classId, const char* name, Getter getter)
      : COSPropT(classId, COSID(name), COSDataTypePtr("any"), COSValue(), PublicAccess, NoAccess,
                 COSPropDefaultFlags, "Part of a copy"),
        getter_(getter) {}
  COSValue getValue(COSInterface* object) const override {
    const CopyContextImpl* context = CopyContextImpl::of(object);
    const vxArray* value = context ? (context->*getter_)() : nullptr;
    return COSValue(value ? vxCreateSharedDataCopy(value) : omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
  }
  void setValue(COSInterface*, COSValue) override {}
  void releaseValue(COSInterface*, COSValue value) const override {
    if (auto* array = value.asPointer<vxArray>()) matrix::destroyArray(array);
  }

 private:
  Getter getter_;
};

CopyContextImpl* contextOf(int nrhs, const COSValue* prhs) {
  if (nrhs < 1) return nullptr;
  const auto* array = prhs[0].asPointer<const vxArray>();
  if (!array || !omIsVCOS(array) || vxIsEmpty(array)) return nullptr;
  return CopyContextImpl::of(omGetArrayElement(array, 0).get());
}

void getCopyMethod(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  CopyContextImpl* context = contextOf(nrhs, prhs);
  if (nlhs < 1) nlhs = 1;
  if (!context || nrhs < 2) {
    plhs[0] = COSValue(omCreateVCOSEmpty("vantel.graphics.GraphicsPlaceholder"));
    return;
  }
  plhs[0] = COSValue(context->getCopy(client, prhs[1].asPointer<const vxArray>()));
}

void willBeCopiedMethod(const COSClient* client, int& nlhs, COSValue* plhs, int nrhs, const COSValue* prhs) {
  CopyContextImpl* context = contextOf(nrhs, prhs);
  if (nlhs < 1) nlhs = 1;
  const auto* array = nrhs > 1 ? prhs[1].asPointer<const vxArray>() : nullptr;
  if (!context || !array) {
    plhs[0] = COSValue(vxCreateLogicalMatrix(0, 0));
    return;
  }
  plhs[0] = COSValue(context->willBeCopied(client, array));
}

class CopyContextCI final : public COSClassInfo {
 public:
  const char* getName() const override { return "CopyContext"; }
  bool isHidden() const override { return true; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    const COSID id = cls->getID();
    copy::setContextClient(cls->getPrivateClient());
    cls->addProperty(new CopyContextPropPI(id, "DestinationParent", &CopyContext::getDestinationParent));
    cls->addProperty(new CopyContextPropPI(id, "CopySources", &CopyContext::getCopySources));
    cls->addMethod(new CopyableMethod(id, "willBeCopied", &willBeCopiedMethod, {"context", "objects"}, {"copied"},
                                      false));
    cls->addMethod(new CopyableMethod(id, "getCopy", &getCopyMethod, {"context", "objects"}, {"copies"}, false));
  }
  // The block is the CopyContextImpl that wraps itself; the transaction owns
  // it, so an instance neither makes nor frees one.
  void* allocateInstance(COSInterface*) override { return nullptr; }
  void deallocateInstance(COSInterface*, void*) override {}
  bool willAllocateData() const override { return true; }
};

// The Copyable flag, straight on the object's Copyable data.
class CopyablePropInfo final : public COSPropT {
 public:
  explicit CopyablePropInfo(COSID classId)
      : COSPropT(classId, COSID("Copyable"), COSDataTypePtr("logical scalar"), COSValue(), ProtectedAccess,
                 ProtectedAccess, COSPropDefaultFlags, "Whether the object is copied") {
    const ExtendedMemberAccess access = copy::copyAccessList();
    setExtendedGetAccess(access);
    setExtendedSetAccess(access);
  }
  COSValue getValue(COSInterface* object) const override {
    const CopyableData* data = Copyable::dataOf(object);
    return COSValue::fromBool(data && data->copyable);
  }
  void setValue(COSInterface* object, COSValue value) override {
    if (CopyableData* data = Copyable::dataOf(object)) data->copyable = value.word() != 0;
  }
};

class CopyableCI final : public AbstractClassInfo {
 public:
  const char* getName() const override { return "Copyable"; }
  bool isHidden() const override { return true; }
  void initializeClass(COSClass* cls, const COSClient*) override {
    cls_ = cls;
    const COSID id = cls->getID();
    auto* flag = new CopyablePropInfo(id);
    cls->addProperty(flag);
    copy::setCopyableFlagProperty(flag);
    auto* copyElement = new CopyableMethod(id, "copyElement", &copy::defaultCopyElement, {"source"}, {"copy"}, true);
    cls->addMethod(copyElement);
    auto* connect = new CopyableMethod(id, "connectCopyToTree", &copy::defaultConnectCopyToTree,
                                       {"source", "copy", "parent", "context"}, {}, true);
    cls->addMethod(connect);
    copy::setDefaultMethods(copyElement, connect);
    // copy(objects) or copy(objects, parent): typed by class, the parent
    // optional.
    const COSDataTypePtr copyable(new copy::ObjectArgumentType(id));
    const COSDataTypePtr graphics(new copy::ObjectArgumentType(COSID("vantel.graphics.Graphics")));
    cls->addMethod(new CopyableMethod(id, "copy", &copy::copyMethod,
                                      {{COSID("objects"), copyable, false}, {COSID("parent"), graphics, true}},
                                      {{COSID("copies"), copyable, false}}, false));
  }
  void* allocateInstance(COSInterface* instance) override {
    if (cls_) cls_->notifyInstanceAllocated(instance);
    // Made with every object: in its room, beside the other blocks.
    return ::new (blockpool::allocateWithObject(sizeof(CopyableData))) CopyableData;
  }
  void deallocateInstance(COSInterface*, void* data) override {
    static_cast<CopyableData*>(data)->~CopyableData();
    blockpool::releaseWithObject(data, sizeof(CopyableData));
  }
  bool willAllocateData() const override { return true; }

 private:
  COSClass* cls_ = nullptr;
};

}  // namespace

namespace support {
COSClassInfo* newCopyContextCI() { return new CopyContextCI; }
COSClassInfo* newCopyableCI() { return new CopyableCI; }
}  // namespace support

}  // namespace sgutils
