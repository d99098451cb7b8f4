// The base of every class info of the library: hidden classes, containment
// answers, class defaults on load, the custom metaclass
// "vantel.graphics.internal.GraphicsMetaClass", and the delete rule of
// required children (a required child goes only with an ancestor). The
// children that findobj sees are each object's public "Children"
// (DefaultFindobjClassInfo).
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/tree/DefaultFindobjClassInfo.h"
#include "vcos/COSUseCustomMetaData.h"

class SGUTILS_API BaseObjectCOSInfo : public COSUseCustomMetaData, public sgutils::DefaultFindobjClassInfo {
 public:
  bool isOkToDestroy(const COSClient* client, COSInterface* instance) override;
  bool isHidden() const override;
  bool canOtherClassContainThisClass(const COSClass* other) const override;
  bool canThisClassContainOtherClass(const COSClass* other) const override;
  COSConnectivity getConnectivity() const override;
  bool useClassDefaultsOnLoad() const override;
  COSID getMetaClassClassID() const override;
  // Save: the defaults stored on a graphics object go into the dynamic
  // property "InternalDefaultPropMap", then its block's doCustomSave (or a
  // storage object's). Always false: the object is saved the ordinary way.
  bool customSave(COSInterface* object, COSValue& value, COSDataTypePtr& type) override;
  // Load: calls the class's "loadobj" with the restored object and marks the
  // object as loaded from a file.
  void customLoad(COSInterfacePtr& object, COSValue value, COSDataTypePtr type) override;

  // The class's private client; the class itself is made first.
  const COSClient* getClient();

 protected:
  // Remembers the class's private client; call from initializeClass.
  void setClient(COSClass* cls) noexcept;

 private:
  const COSClient* client_ = nullptr;
};

namespace sgutils {
// The delete rule on its own: true unless `instance` is a required child
// and no ancestor is being destroyed.
SGUTILS_API bool isOkToDestroyGraphics(COSInterface* instance);
}  // namespace sgutils
