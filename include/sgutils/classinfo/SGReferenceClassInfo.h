// The class info of "vantel.graphics.internal.ReferenceObject", the abstract
// root of the non-heterogeneous handle objects.
#pragma once

#include "sgutils/classinfo/RootClassInfo.h"

class SGUTILS_API SGReferenceClassInfo : public RootClassInfo {
 public:
  SGReferenceClassInfo() noexcept;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;

 protected:
  void addMembers(COSClass* cls) override;
};
