// The class info of "vantel.graphics.internal.StorageObject", the abstract
// root of the non-handle storage objects.
#pragma once

#include "sgutils/classinfo/RootClassInfo.h"

class SGUTILS_API SGStorageClassInfo : public RootClassInfo {
 public:
  SGStorageClassInfo() noexcept;
};
