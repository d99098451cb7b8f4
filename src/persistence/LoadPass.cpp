// The object steps of saving and loading graphics objects: the class info's
// customSave and customLoad, the defaults carried through a save in the
// dynamic property "InternalDefaultPropMap", and the step after load
// (sgLoadObj, then the pass that runs CreateFcn and applies the defaults of
// loaded children). The serializer's own walk is GraphicsSaver and
// GraphicsLoader.
#include <string>

#include "foundation/log/Logger.h"
#include "sgdatatypes/CallbackListeners.h"
#include "sgutils/classinfo/BaseObjectCOSInfo.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/lifecycle/SGStorage.h"
#include "sgutils/objects/GraphicsCoreProperties.gen.h"
#include "sgutils/propinfos/BlockOf.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "src/copy/ArrayValue.h"
#include "src/persistence/GraphicsLoader.h"
#include "src/persistence/SavedDefaults.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSDataType.h"
#include "vcos/COSInterface.h"
#include "vcos/COSListener.h"
#include "vcos/COSPropInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vcos/ObjectSerialization.h"
#include "vx/matrix.h"
#include "vx/vxQuery.h"

using graphics::internal::GraphicsCoreProperties;

namespace {

GraphicsCoreProperties* coreBlockOf(const COSInterface* object) {
  COSClass* core = GraphicsCoreProperties::getClassInstance();
  if (!object || object->isDestroyed() || !core || !object->getClass()->isSubclassOf(core)) return nullptr;
  return sgutils::blockOf<GraphicsCoreProperties>(object, GraphicsCoreProperties::classID());
}

}  // namespace

// ---- save

bool BaseObjectCOSInfo::customSave(COSInterface* object, COSValue& value, COSDataTypePtr& type) {
  if (!object) return false;
  if (foundation::log::Logger& lg = sgutils::persistence::serializationLog(); lg.isOn(foundation::log::kInfo))
    lg.write(foundation::log::kInfo, std::string("BaseObjectCOSInfo::customSave ") + object->getClass()->getName());
  if (SGHandle* handle = SGHandle::fromObject(object)) {
    handle->doDefaultPropSave(COSInterfacePtr(object), value, type);
    handle->doCustomSave();
    return false;
  }
  static const COSID storage("vantel.graphics.internal.StorageObject");
  if (!object->isDestroyed() && COSClass::getClass(storage) && object->getClass()->isSubclassOf(storage))
    if (auto* block = static_cast<SGStorage*>(static_cast<SGReference*>(object->getInstanceData(storage))))
      block->doCustomSave();
  return false;
}

void SGStorage::doCustomSave() {}

void SGHandle::doCustomSave() {}

void SGHandle::doDefaultPropSave(COSInterfacePtr object, COSValue& value, COSDataTypePtr& type) {
  if (!object || !defaultProps_ || vxIsEmpty(defaultProps_)) return;
  COSPropInfo* property = sgutils::persistence::savedDefaultsProperty(object, true);
  if (!property) return;
  property->setValue(object.get(), COSValue(defaultProps_));
  value = COSValue(omCreateVCOSScalar(object));
  type = property->getDataType();
}

// ---- load

void BaseObjectCOSInfo::customLoad(COSInterfacePtr& object, COSValue value, COSDataTypePtr type) {
  if (!object) return;
  COSClass* cls = object->getClass();
  foundation::log::Logger& lg = sgutils::persistence::serializationLog();
  if (lg.isOn(foundation::log::kInfo))
    lg.write(foundation::log::kInfo, std::string("BaseObjectCOSInfo::customLoad ") + (cls ? cls->getName() : ""));
  static const COSID elementBased(object_serialization::CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME);
  if (cls && cls->isSubclassOf(elementBased)) {
    // The class takes its saved elements in itself, then finishes through
    // "finalizeIncomingObject".
    object_serialization::customizeAndDeserialize(object, cls, value, type);
  } else {
    const vxArray* saved = value.asPointer<const vxArray>();
    matrix::unique_vxArray self;
    if (!saved || !omIsVCOS(saved)) {
      if (lg.isOn(foundation::log::kInfo)) lg.write(foundation::log::kInfo, "    'val' is not an VCOS object");
      self.reset(omCreateVCOSScalar(object));
      saved = self.get();
    }
    omCallLoadobjMethod(object, saved, type);
  }
  if (SGHandle* handle = SGHandle::fromObject(object.get())) handle->setLoadedFromFile(true);
}

vxArray* SGHandle::getDeserializedChildren() {
  return sgutils::persistence::GraphicsLoader::deserializedChildrenOf(getCOSObject());
}

void SGHandle::doLoadObj() {}

namespace graphics::internal {

void GraphicsCoreProperties::sgLoadObj() {
  if (SGHandle* handle = SGHandle::fromObject(getCOSObject())) handle->doLoadObj();
  loadObjCalled_ = true;
  if (topLevelSerializedObject_ || parentExecutedCreateFcn_) executeCreateFcnAndApplyDefaultsAfterLoad(true);
}

void GraphicsCoreProperties::executeCreateFcnAndApplyDefaultsAfterLoad(bool force) {
  // A parent's pass that comes before this object's own load step leaves a
  // mark; sgLoadObj then runs the pass.
  if (!loadObjCalled_) {
    parentExecutedCreateFcn_ = true;
    return;
  }
  if (!force && topLevelSerializedObject_) return;
  topLevelSerializedObject_ = true;  // the mark of having run
  const COSInterfacePtr object = getCOSReference();
  if (!object) return;

  if (!createFcn_.get().isEmpty()) {
    // An axes is current in its figure while its callback runs.
    static const COSID abstractAxes("vantel.graphics.axis.AbstractAxes");
    static const COSID axes("vantel.graphics.axis.Axes");
    COSClass* cls = object->getClass();
    if (cls->isSubclassOf(abstractAxes) || cls->isSubclassOf(axes)) {
      static const COSID currentAxes("CurrentAxes");
      COSInterface* owner = object->getOwnerObject();
      COSInterfacePtr figure = owner ? getParentFigure(owner) : COSInterfacePtr();
      if (figure)
        if (const COSPropInfo* property = figure->findPropertyInfo(currentAxes)) {
          matrix::unique_vxArray self(omCreateVCOSScalar(object));
          const COSDataTypePtr type = property->getDataType();
          sgutils::copy::OwnedValue value(type, sgutils::copy::fromArray(type, self.get()));
          figure->setPropertyValue(COSGetPublicClient(), property, value.get());
        }
    }
    // The listener that runs CreateFcn when an object is made: (object, []).
    COSInterfacePtr runner = graphics::datatype::createListener("CreateFcn", false, false);
    COSListener::toListener(runner)->fire(object.get(), nullptr);
  }
  // The callback may have deleted the object.
  if (object->isBeingDestroyed() || object->isDestroyed()) return;

  // The parts the object made itself (an axes's title), its oldest children,
  // run their callbacks first. They take no defaults: their owner gave them
  // none when it made them, and the load gives back the values they had.
  if (matrix::unique_vxArray parts{sgutils::persistence::GraphicsLoader::deserializedPartsOf(object.get())}) {
    for (std::size_t i = 0, n = vxGetNumberOfElements(parts.get()); i < n; ++i) {
      const COSInterfacePtr part = omGetLiveArrayElement(parts.get(), i);
      if (!part || part->isBeingDestroyed() || part->isDestroyed()) continue;
      if (GraphicsCoreProperties* block = coreBlockOf(part.get()))
        block->executeCreateFcnAndApplyDefaultsAfterLoad(false);
    }
    if (object->isBeingDestroyed() || object->isDestroyed()) return;
  }

  SGHandle* self = SGHandle::fromObject(object.get());
  matrix::unique_vxArray children(self ? self->getDeserializedChildren() : nullptr);
  if (!children || vxIsEmpty(children.get()) || !omIsVCOS(children.get())) return;
  const std::size_t n = vxGetNumberOfElements(children.get());
  for (std::size_t i = 0; i < n; ++i) {
    const COSInterfacePtr child = omGetLiveArrayElement(children.get(), i);
    if (!child || child->isBeingDestroyed() || child->isDestroyed()) continue;
    if (GraphicsCoreProperties* block = coreBlockOf(child.get())) block->executeCreateFcnAndApplyDefaultsAfterLoad(false);
    // A loaded child takes its parent's defaults after its callbacks.
    if (child->isBeingDestroyed() || child->isDestroyed()) continue;
    COSInterface* parent = child->getOwnerObject();
    SGHandle* handle = SGHandle::fromObject(child.get());
    if (parent && handle) handle->applyDefaultProperties(COSInterfacePtr(parent), false);
  }
}

}  // namespace graphics::internal
