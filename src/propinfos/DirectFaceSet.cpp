#include "sgutils/propinfos/DirectFaceSet.h"

#include <typeinfo>

#include "src/metadata/SGCustomMetaClasses.h"
#include "sgdatatypes/Enumeration.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/FaultInjection.h"

namespace sgutils::detail {

namespace {

// The graphics meta class (final) runs, for a generated face, "mode manual,
// then the value".
bool isGraphicsCustomSet(const COSCustomMetaClass* meta) noexcept {
  return meta && typeid(*meta) == typeid(metadata::SGCustomMetaClass);
}

}  // namespace

FaceSetCourse publicFaceSetCourse(COSInterface* object, const COSPropInfo* face, const COSPropInfo* mode) noexcept {
  COSCustomMetaClass* faceSet = nullptr;
  if (!object->isUnobservedPublicSet(face, faceSet)) return FaceSetCourse::ClientPath;
  if (!faceSet) return FaceSetCourse::Plain;
  if (!isGraphicsCustomSet(faceSet)) return FaceSetCourse::ClientPath;
  COSCustomMetaClass* modeSet = nullptr;
  if (!mode || !object->isUnobservedPublicSet(mode, modeSet) || modeSet) return FaceSetCourse::ClientPath;
  return FaceSetCourse::ModeThenValue;
}

void setModeManualPublic(COSInterface* object, COSPropInfo* mode) {
  const COSValue manual(graphics::datatype::canonicalEnumerationByte(1));
  COSCustomMetaClass* modeSet = nullptr;
  if (object->isUnobservedPublicSet(mode, modeSet) && !modeSet) {
    vcos::fault::at(vcos::fault::Point::PropertySet);  // as the client path would
    mode->setValue(object, manual);
    return;
  }
  object->setPropertyValue(COSGetPublicClient(), mode, manual);
}

}  // namespace sgutils::detail
