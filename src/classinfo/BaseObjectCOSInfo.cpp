// The common answers of the library's class infos, and the delete rule of
// required children.
#include "sgutils/classinfo/BaseObjectCOSInfo.h"

#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSClass.h"

bool sgutils::isOkToDestroyGraphics(COSInterface* instance) {
  if (!instance) return true;
  COSInterface* owner = instance->getOwnerObject();
  SGHandle* block = SGHandle::fromObject(instance);
  if (!block || !block->getIsRequiredChild() || !owner) return true;
  // A required child goes only as part of the deletion of an ancestor.
  for (COSInterface* o = owner; o; o = o->getOwnerObject())
    if (o->isBeingDestroyed()) return true;
  return false;
}

bool BaseObjectCOSInfo::isOkToDestroy(const COSClient*, COSInterface* instance) {
  return sgutils::isOkToDestroyGraphics(instance);
}
bool BaseObjectCOSInfo::isHidden() const { return true; }
bool BaseObjectCOSInfo::canOtherClassContainThisClass(const COSClass*) const { return true; }
bool BaseObjectCOSInfo::canThisClassContainOtherClass(const COSClass*) const { return false; }
COSConnectivity BaseObjectCOSInfo::getConnectivity() const { return COSConnectTree; }
bool BaseObjectCOSInfo::useClassDefaultsOnLoad() const { return true; }

COSID BaseObjectCOSInfo::getMetaClassClassID() const {
  static const COSID id("vantel.graphics.internal.GraphicsMetaClass");
  return id;
}

const COSClient* BaseObjectCOSInfo::getClient() { return client_; }
void BaseObjectCOSInfo::setClient(COSClass* cls) noexcept { client_ = cls->getPrivateClient(); }
