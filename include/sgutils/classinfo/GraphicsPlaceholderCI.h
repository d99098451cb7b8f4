// The class info of "vantel.graphics.GraphicsPlaceholder": a concrete,
// sealed graphics class that stands for a missing object in arrays of
// graphics objects (the gap filler of heterogeneous arrays).
#pragma once

#include "sgutils/classinfo/SGHandleClassInfo.h"

class SGUTILS_API GraphicsPlaceholderCI : public SGHandleClassInfo {
 public:
  GraphicsPlaceholderCI() noexcept;
  // No data of its own: the Graphics block is all it has.
  void* allocateInstance(COSInterface* instance) override;
  bool willAllocateData() const override;

 protected:
  void addMembers(COSClass* cls) override;
};
