// The hand-written half of GraphicsCoreProperties: the context menu (one
// store behind three names, the checks of a new menu, the listener that
// empties it when the menu goes), the deletion flag, the load mark that a
// save reads, and the class's listener that runs DeleteFcn.
#include "sgutils/objects/GraphicsCoreProperties.gen.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/CallbackListeners.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/tree/TreeWalks.h"
#include "sgutils/objects/MixinMethod.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSListener.h"
#include "vcos/COSListenerOp.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FirstInstanceListener.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/vx.h"

using foundation::core::except::Error;
using graphics::datatype::HandleOrEmpty;

namespace graphics::internal {

namespace {

const COSID& objectBeingDestroyed() {
  static const COSID id("ObjectBeingDestroyed");
  return id;
}

COSPropInfo* uiContextMenuProperty(COSInterface* object) {
  static const COSID name("UIContextMenu");
  return object->getClass()->findPropertyExact(name);
}

HandleOrEmpty menuOf(COSValue value) {
  return value.isEmpty() ? HandleOrEmpty() : *value.asPointer<const HandleOrEmpty>();
}

// Whether the menu says it may be saved: its "Serializable" reads on. A
// menu without the property, or whose value is not a flag, may be saved.
bool menuIsSerializable(COSInterface* menu) {
  static const COSID name("Serializable");
  COSInterfacePtr found;
  menu->findProperty(found, name);
  auto* property = dynamic_cast<COSPropInfo*>(found.get());
  if (!property) return true;
  const COSDataTypePtr type = property->getDataType();
  static const COSID onOff("vantel.graphics.datatype.on_off"), logical("logical scalar");
  if (!type || (type->getID() != onOff && type->getID() != logical)) return true;
  const COSValue value = property->getValue(menu);
  const bool on = value.asBool();
  property->releaseValue(menu, value);
  return on;
}

// The listener that runs DeleteFcn when an object is deleted: one for the
// class, standing for the listener of each object whose Setup asked for one,
// and sorted as that object's first listener (which it was). Like the
// listener of one object, it does not run again for an object while it runs
// for it; for another object it does.
class DeleteFcnOp final : public COSListenerOp {
 public:
  DeleteFcnOp() : op_(graphics::datatype::createCallbackOp(COSID("DeleteFcn"), /*passEventData=*/true)) {}

  void callback(COSInterface* source, COSEventData* data) override {
    if (!asked(source) || isRunningFor(source)) return;
    running_.push_back(source);
    struct Done {
      std::vector<COSInterface*>& running;
      ~Done() { running.pop_back(); }
    } done{running_};
    op_->callback(source, data);
  }
  bool readsEventData() const noexcept override { return op_->readsEventData(); }
  bool mayRunFor(COSInterface* source) const noexcept override {
    return asked(source) && !isRunningFor(source) && op_->mayRunFor(source);
  }

 private:
  static bool asked(COSInterface* source) noexcept {
    if (!source || source->isDestroyed()) return false;
    void* slot = source->getInstanceData(GraphicsCoreProperties::classID());
    return slot && static_cast<GraphicsCoreProperties*>(static_cast<SGReference*>(slot))->asksForDeleteFcn();
  }
  bool isRunningFor(COSInterface* source) const noexcept {
    return std::find(running_.begin(), running_.end(), source) != running_.end();
  }

  std::unique_ptr<COSListenerOp> op_;
  std::vector<COSInterface*> running_;  // innermost last
};

void markContextMenuDirtyMethod(const COSClient*, int&, COSValue*, int nrhs, const COSValue* prhs) {
  if (nrhs < 1) return;
  const vxArray* self = prhs[0].asPointer<const vxArray>();
  if (!self || !omIsVCOS(self) || vxGetNumberOfElements(self) != 1) return;
  COSInterfacePtr object = omGetLiveArrayElement(self, 0);
  if (!object) return;
  if (void* slot = object->getInstanceData(GraphicsCoreProperties::classID()))
    static_cast<GraphicsCoreProperties*>(static_cast<SGReference*>(slot))->markContextMenuDirty();
}

}  // namespace

void GraphicsCoreProperties::addMethods(COSClass* cls, COSID classId) {
  sgutils::addMixinMethod(cls, classId, "markContextMenuDirty", &markContextMenuDirtyMethod, {"object"}, {});
  // Recursive at this level: a DeleteFcn that deletes another object runs
  // that object's DeleteFcn; the op refuses a second run for one object.
  COSInterfacePtr listener = COSListener::createListener(new DeleteFcnOp);
  COSListener::toListener(listener)->setRecursive(true);
  vcos::addFirstInstanceListener(cls, objectBeingDestroyed(), COSListener::toListener(listener));
}

void GraphicsCoreProperties::markContextMenuDirty() {
  COSInterface* self = getCOSObject();
  if (!self || self->isBeingDestroyed()) return;
  doPostSet(self, uiContextMenuProperty(self), /*limitsDirty=*/false, /*objectDirty=*/true);
}

void GraphicsCoreProperties::attachDeleteListener(COSInterfacePtr object) {
  // The class's listener (addMethods) runs DeleteFcn for the objects that
  // asked: nothing is made per object.
  if (object) deleteListenerAttached_ = true;
}

COSInterfacePtr GraphicsCoreProperties::getParentFigure(COSInterface* object) {
  static const COSID figure("vantel.ui.Figure");
  // The figure class belongs to the classes above; without it there is no figure.
  const COSClass* figureClass = COSClass::getClass(figure);
  if (!figureClass) return {};
  return sgutils::getAncestor(COSInterfacePtr(object), figureClass, /*useTreeLink=*/true);
}

// ---- ContextMenu: the public alias of UIContextMenu

COSValue GraphicsCoreProperties::getContextMenuImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  return property->getDataType()->copy(COSValue(&contextMenu_));
}

void GraphicsCoreProperties::setContextMenuImpl(COSPropInfo*, const COSClient*, COSInterface* object,
                                                COSValue value) {
  COSPropInfo* target = uiContextMenuProperty(object);
  if (target->getDataType()->isEqual(value, COSValue(&contextMenu_))) return;
  object->setPropertyValue(COSGetPublicClient(), target, value);
  if (object->isDestroyed() || object->isBeingDestroyed()) return;
  static const COSID method("markContextMenuDirty");
  matrix::unique_vxArray self(omCreateVCOSScalar(COSInterfacePtr(object)));
  const vxArray* inputs[] = {self.get()};
  vxArray* outputs[1] = {nullptr};
  omCallMethod(object->getClass()->getID(), method, COSGetPublicClient(), 0, outputs, 1, inputs,
               /*dispatchOnObject=*/true);
  if (outputs[0]) vxDestroyArray(outputs[0]);
}

// ---- UIContextMenu: the checks and the store

COSValue GraphicsCoreProperties::getUIContextMenuImpl(COSPropInfo* property, const COSClient*, COSInterface*) {
  return property->getDataType()->copy(COSValue(&contextMenu_));
}

void GraphicsCoreProperties::setUIContextMenuImpl(COSPropInfo*, const COSClient*, COSInterface* object,
                                                  COSValue value) {
  HandleOrEmpty menu = menuOf(value);
  if (COSInterface* target = menu.get().get()) {
    if (target->isDestroyed() || target->isBeingDestroyed()) throw Error("VANTEL:sg:DeletedObject");
    static const COSID marker("_IsContextMenu"), menuClass("vantel.ui.container.ContextMenu");
    COSInterfacePtr found;
    target->findProperty(found, marker);
    if (!found && !target->getClass()->isSubclassOf(menuClass)) throw Error("VANTEL:sgutils:InvalidContextMenu");
    // An object that has no figure yet takes any menu.
    const COSInterfacePtr ownFigure = getParentFigure(object);
    if (ownFigure && ownFigure != getParentFigure(target)) throw Error("VANTEL:sg:InvalidObject");
  }
  // Every check passed: store, then move the listener to the new menu.
  contextMenu_ = std::move(menu);
  menuListener_.reset();
  if (!contextMenu_.isAlive()) return;
  COSInterfacePtr user(object, COSWeakReference);
  menuListener_.attach(contextMenu_.get().get(), objectBeingDestroyed(),
                       COSListenerOp::fromFunction([user](COSInterface*, COSEventData*) {
                         if (!user || user->isDestroyed()) return;
                         COSInterface* self = user.get();
                         self->setPropertyValue(COSGetPublicClient(), uiContextMenuProperty(self), COSValue());
                       }));
}

// ---- SerializableUIContextMenu: the menu as a file keeps it

COSValue GraphicsCoreProperties::getSerializableUIContextMenuImpl(COSPropInfo* property, const COSClient*,
                                                                  COSInterface*) {
  // A menu that is gone, or says it is not to be saved, is left out.
  if (!contextMenu_.isAlive() || !menuIsSerializable(contextMenu_.get().get())) return COSValue();
  return property->getDataType()->copy(COSValue(&contextMenu_));
}

void GraphicsCoreProperties::setSerializableUIContextMenuImpl(COSPropInfo*, const COSClient*, COSInterface* object,
                                                              COSValue value) {
  // An empty value is ignored; a menu goes through the usual checks.
  if (menuOf(value).isEmpty()) return;
  object->setPropertyValue(getPrivateClient(), uiContextMenuProperty(object), value);
}

// ---- BeingDeleted, TopLevelSerializedObject

COSValue GraphicsCoreProperties::getBeingDeletedImpl(COSPropInfo*, const COSClient*, COSInterface* object) {
  return COSValue::fromBool(SGHandle::isBeingDeleted(object));
}

void GraphicsCoreProperties::setBeingDeletedImpl(COSPropInfo*, const COSClient*, COSInterface*, COSValue) {}

COSValue GraphicsCoreProperties::getTopLevelSerializedObjectImpl(COSPropInfo*, const COSClient*, COSInterface*) {
  // The first read of a save sees the stored value, every later one true.
  const bool stored = topLevelSerializedObject_;
  topLevelSerializedObject_ = true;
  return COSValue::fromBool(stored);
}

void GraphicsCoreProperties::setTopLevelSerializedObjectImpl(COSPropInfo*, const COSClient*, COSInterface*,
                                                             COSValue value) {
  topLevelSerializedObject_ = value.asBool();
}

}  // namespace graphics::internal
