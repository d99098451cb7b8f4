// The class info of "vantel.graphics.internal.GraphicsPropertyHandler", the
// abstract root of graphics objects that support ambiguous property names and
// carry the default and factory handlers.
#pragma once

#include "sgutils/classinfo/RootClassInfo.h"

class SGUTILS_API SGPropHandlerClassInfo : public RootClassInfo {
 public:
  SGPropHandlerClassInfo() noexcept;
  void* allocateInstance(COSInterface* instance) override;
  void deallocateInstance(COSInterface* instance, void* data) override;

 protected:
  void addMembers(COSClass* cls) override;
};
