#include "src/persistence/SavedDefaults.h"

#include "sgutils/defaults/DefaultProp.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "sgutils/persistence/GraphicsFile.h"
#include "vcos/COSClass.h"
#include "vcos/COSGenericProp.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSValue.h"
#include "vcos/DynamicProperties.h"

namespace sgutils::persistence {

namespace {

const COSID& savedDefaultsId() {
  static const COSID id(GraphicsFile::kDefaultsField);
  return id;
}

COSPropInfo* findSaved(const COSInterfacePtr& object) {
  COSInterfacePtr found;
  object->findDynamicProperty(found, savedDefaultsId());
  return static_cast<COSPropInfo*>(found.get());
}

}  // namespace

COSPropInfo* savedDefaultsProperty(const COSInterfacePtr& object, bool make) {
  if (!object) return nullptr;
  if (COSPropInfo* property = findSaved(object)) return property;
  if (!make) return nullptr;
  // Stored by the serializer, out of sight of get and display.
  COSInterfacePtr made(COSGenericProp::createNewDynamicProp(COSString(savedDefaultsId().str()),
                                                            object->getClass()->getID(), COSID("any")));
  auto* generic = static_cast<COSGenericProp*>(made.get());
  generic->setTransient(false);
  generic->setVisible(false);
  object->addDynamicProperty(generic);
  return findSaved(object);
}

bool restoreSavedDefaults(const COSInterfacePtr& object, const vxArray* map) {
  SGHandle* handle = SGHandle::fromObject(object.get());
  if (!handle) return false;
  COSPropInfo* property = savedDefaultsProperty(object, true);
  if (!property) return false;
  property->setValue(object.get(), COSValue(const_cast<vxArray*>(map)));
  handle->setLoadedFromFile(true);
  return true;
}

void takeWaitingSavedDefaults(const COSInterfacePtr& object) {
  const SGHandle* handle = SGHandle::fromObject(object.get());
  if (!handle || !handle->getLoadedFromFile() || !vcos::hasDynamicProperties(object.get())) return;
  if (!findSaved(object)) return;
  const DefaultProp take(object);
}

}  // namespace sgutils::persistence
