// The Graphics block: construction (with the once-per-process creation
// callback listener), destruction, the stored arrays (application data and
// defaults), the default answers of the virtual operations, reset, and the
// BeingDeleted rule.
#include "sgutils/lifecycle/SGHandle.h"

#include "sgutils/startup/FrameHooks.h"
#include "sgutils/classinfo/ResetEI.h"
#include "sgutils/classinfo/ResetGraphicsEvent.h"
#include "sgutils/persistence/UDDConverter.h"
#include "src/classinfo/ClassLookup.h"
#include "src/startup/DatatypesBridge.h"
#include "sgutils/startup/Namespaces.h"
#include "vcos/ArrayConversion.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSListener.h"
#include "vcos/COSClassInfo.h"
#include "vcos/COSPackage.h"
#include "vcos/InstanceBlocks.h"
#include "vcos/ObjectArray.h"
#include "vcos/PropertyRouteEpoch.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vcos/VxProperty.h"
#include "vx/vxQuery.h"

namespace {

const COSID& graphicsClassId() {
  static const COSID id("vantel.graphics.Graphics");
  return id;
}

vxArray* emptyStoredStruct() {
  vxArray* s = vxCreateStructMatrix(1, 1, 0, nullptr);
  vxSetArrayScope(s, vxSCOPE_PERSISTENT);
  return s;
}

// Frees a stored array: objects inside are let go weakly first, so that a
// stored array never deletes an object while its owner is torn down.
void destroyStored(vxArray* array) noexcept {
  if (!array) return;
  if (vxHasCycleDetectionContents(array)) vcosConvertArrayToExternalInPlace(array, false);
  matrix::destroyArray(array);
}

// What setApplicationData and setDefaultProp store for `value`.
vxArray* storedFormOf(const vxArray* value) {
  if (value) {
    const vxClassID cls = vxGetClassID(value);
    if (cls == vxSTRUCT_CLASS || cls == vxOBJECT_CLASS) {
      vxArray* stored = vcosConvertArrayToInternal(const_cast<vxArray*>(value), /*copy=*/true);
      vxSetArrayScope(stored, vxSCOPE_PERSISTENT);
      return stored;
    }
  }
  return emptyStoredStruct();
}

// The class listener that runs "CreateFcn" for every new graphics object,
// attached once per process at priority 100 and never removed; with it the
// one that runs "ButtonDownFcn" of the classes that have it when a hit is
// reported (the event "Hit").
void installCreateFcnListener() {
  static const bool installed = [] {
    COSInterfacePtr listener = sgutils::bridge::createCreateFcnListener();
    COSClass* cls = COSClass::getClass(graphicsClassId());
    if (listener && cls) cls->addClassListener(COSID("InstanceCreated"), COSListener::toListener(listener), 100);
    COSInterfacePtr buttonDown = sgutils::bridge::createButtonDownFcnListener();
    COSClass* ui = COSClass::getClass(COSID("vantel.graphics.internal.GraphicsUIProperties"));
    if (buttonDown && ui) ui->addClassListener(COSID("Hit"), COSListener::toListener(buttonDown), 100);
    return true;
  }();
  (void)installed;
}

}  // namespace

SGHandle::SGHandle() { installCreateFcnListener(); }

SGHandle::~SGHandle() {
  if (appData_) {
    vxArray* live = appData_->live;
    destroyStored(live);
    if (appData_->serializable && appData_->serializable != live) destroyStored(appData_->serializable);
  }
  destroyStored(defaultProps_);
  // A NaN compares unequal and is handed on as well. A number given through
  // the table alone (a conversion to a number) is found by the object: the
  // table's weak reference would otherwise keep the object's memory for good.
  if (!(getDoubleRef() == -1.0))
    sgutils::bridge::destroyHandleNumber(getDoubleRef());
  else if (COSInterface* self = getCOSObject())
    sgutils::bridge::destroyHandleNumberOf(self);
  releaseCOSReference();
}

vxArray* SGHandle::doGetPropertyGroup(vxArray*) const { return nullptr; }
vxArray* SGHandle::doGetDescriptiveLabelForDisplay(vxArray*) const { return nullptr; }
void SGHandle::doDisplay(COSInterfacePtr) const {}
bool SGHandle::resetAllowed(COSInterfacePtr) { return true; }
void SGHandle::doReset(COSInterfacePtr object) {
  if (object) object->resetToClassDefaults();
}
void SGHandle::doPostSet(COSInterface*, COSPropInfo*, DirtyFlags) {}
void SGHandle::doPostSet(COSInterface*, COSPropInfo*, bool, bool) {}
bool SGHandle::isThisYours(COSInterfacePtr) { return false; }
bool SGHandle::isChildProperty(const char*) const { return false; }
bool SGHandle::isUIComponent() { return false; }
bool SGHandle::isInWebFigure() { return false; }
const COSClient* SGHandle::getPrivateClient() { return COSGetPublicClient(); }

SGHandle::AppData& SGHandle::appData() const {
  if (!appData_) appData_ = std::make_unique<AppData>();
  return *appData_;
}

const vxArray* SGHandle::getApplicationData() const {
  AppData& data = appData();
  if (!data.live) data.live = emptyStoredStruct();
  return data.live;
}

void SGHandle::setApplicationData(const vxArray* value) {
  if (value == madeApplicationData()) return;
  AppData& data = appData();
  vxArray* old = data.live;
  data.live = storedFormOf(value);
  destroyStored(old);
}

const vxArray* SGHandle::getSerializableApplicationData() {
  AppData& data = appData();
  if (data.serializable != data.live) destroyStored(data.serializable);
  data.serializable = nullptr;
  // The form a file keeps: handles of the older object layer turned to their
  // marked numbers. The conversion is a new array only when it changed any.
  getApplicationData();  // made on first read
  vxArray* converted = sgutils::UDDConverter::convertUDDToHandles(data.live);
  matrix::unique_vxArray temporary(converted != data.live ? converted : nullptr);
  vxArray* copy = vxCreateSharedCopyNotOnArrayList(converted);
  vxSetArrayScope(copy, vxSCOPE_PERSISTENT);
  data.serializable = copy;
  return copy;
}

void SGHandle::setSerializableApplicationData(const vxArray* value) {
  // Old handles read from a file become placeholders before the value is stored.
  vxArray* input = const_cast<vxArray*>(value);
  vxArray* converted = value ? sgutils::UDDConverter::replaceUDDHandles(input) : nullptr;
  matrix::unique_vxArray temporary(converted != input ? converted : nullptr);
  setApplicationData(converted);
}

void SGHandle::setDefaultProp(const vxArray* value) {
  if (value == defaultProps_) return;
  sgutils::noteStoredDefaultsChanged();
  vxArray* old = defaultProps_;
  defaultProps_ = storedFormOf(value);
  destroyStored(old);
}

SGHandle* SGHandle::fromObject(const COSInterface* object) noexcept {
  if (!object || object->isDestroyed()) return nullptr;
  // Where the Graphics block lies depends on the class alone: its index is
  // kept for the last class that has one while the property route epoch
  // stays (a class destroyed moves it, so a new class at the same address
  // is asked again). A class without the block is asked each time: its
  // slot table may still be in the making. Interpreter thread only, like
  // the other kept answers.
  static struct {
    const COSClass* cls = nullptr;
    std::uint64_t epoch = 0;
    int slot = -1;
  } kept;
  const COSClass* cls = object->getClass();
  const std::uint64_t epoch = vcos::propertyRouteEpoch();
  if (cls != kept.cls || epoch != kept.epoch) {
    const int slot = vcos::blockSlotOf(cls, graphicsClassId());
    if (slot < 0) return nullptr;
    kept.cls = cls;
    kept.epoch = epoch;
    kept.slot = slot;
  }
  // Blocks are stored as SGReference pointers.
  void* block = vcos::instanceDataAt(object, kept.slot);
  return block ? static_cast<SGHandle*>(static_cast<SGReference*>(block)) : nullptr;
}

bool SGHandle::isBeingDeleted(const COSInterface* object) noexcept {
  for (const COSInterface* o = object; o; o = o->getOwnerObject())
    if (o->isBeingDestroyed()) return true;
  return false;
}

void SGHandle::Reset(const COSInterfacePtr& object) {
  if (!object || object->isBeingDestroyed()) return;
  SGHandle* block = fromObject(object.get());
  if (!block || !block->resetAllowed(object)) return;
  block->doReset(object);
  if (auto theme = sgutils::frameHooks().themeOnReset) theme(object, false);

  static const COSID parentId("Parent");
  if (object->findPropertyInfo(parentId)) {
    matrix::unique_vxArray self(omCreateVCOSScalar(object));
    matrix::unique_vxArray parent(vxGetProperty(self.get(), 0, "Parent"));
    if (parent && !vxIsEmpty(parent.get()) && omIsVCOS(parent.get())) {
      if (COSInterfacePtr p = omGetArrayElement(parent.get(), 0)) block->applyDefaultProperties(p, true);
    }
  }
  COSInterfacePtr data(new ResetGraphicsEvent(object.get()));
  object->notifyEvent(COSGetPublicClient(), ResetEI::eventId(), static_cast<COSEventData*>(data.get()));
}

COSClass* SGHandle::getClassInstance() {
  struct Tag;
  return sgutils::cachedClass<Tag>(sgutils::getGraphicsNamespace(), "Graphics");
}

void SGHandle::addClassToNamespace(COSPackage* package, COSClassInfo* info) {
  // The class is named by its full name rather than built here: its
  // superclasses may be registered after it, and classes build on first use.
  const COSID classId = package->fullNameOf(info->getName());
  const bool isAbstract = info->isAbstract();
  package->addClass(info, 0, 2);
  if (auto replace = sgutils::frameHooks().converterReplacer) replace(classId, isAbstract);
}
