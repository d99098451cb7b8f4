// The class info of "vantel.graphics.internal.StorageObject", the abstract
// root of the non-handle storage objects.
#pragma once

#include "sgutils/BaseObjectCOSInfo.h"

class SGUTILS_API SGStorageClassInfo : public BaseObjectCOSInfo {
 public:
  const char* getName() const override;
  const char* getDescription() const override;
  const char* getDetailedDescription() const override;
  bool isHandleClass() const override;
  bool isAbstract() const override;
  bool classIsAbstract() const override;
  bool arePropertiesCaseInsensitive() const override;
  bool isPropertyTruncationAllowed() const override;
};
