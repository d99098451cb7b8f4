// The class info of "vantel.graphics.internal.GraphicsPropertyHandler", the
// abstract root of graphics objects that support ambiguous property names and
// carry the default and factory handlers.
#pragma once

#include "sgutils/BaseObjectCOSInfo.h"

class SGUTILS_API SGPropHandlerClassInfo : public BaseObjectCOSInfo {
 public:
  const char* getName() const override;
  const char* getDescription() const override;
  const char* getDetailedDescription() const override;
  bool isHandleClass() const override;
  bool isAbstract() const override;
  bool classIsAbstract() const override;
  bool areChildrenSaved() const override;
  bool arePropertiesCaseInsensitive() const override;
  bool isPropertyTruncationAllowed() const override;
  void initializeClass(COSClass* cls, const COSClient* client) override;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
};
