// The class info of "vantel.graphics.internal.ReferenceObject", the abstract
// root of the non-heterogeneous handle objects.
#pragma once

#include "sgutils/BaseObjectCOSInfo.h"

class SGUTILS_API SGReferenceClassInfo : public BaseObjectCOSInfo {
 public:
  const char* getName() const override;
  const char* getDescription() const override;
  const char* getDetailedDescription() const override;
  bool isHandleClass() const override;
  bool isAbstract() const override;
  bool classIsAbstract() const override;
  bool arePropertiesCaseInsensitive() const override;
  bool isPropertyTruncationAllowed() const override;
  void initializeClass(COSClass* cls, const COSClient* client) override;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;
};
