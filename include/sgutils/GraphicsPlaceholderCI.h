// The class info of "vantel.graphics.GraphicsPlaceholder": a concrete,
// sealed graphics class that stands for a missing object in arrays of
// graphics objects (the gap filler of heterogeneous arrays).
#pragma once

#include "sgutils/SGHandleClassInfo.h"

class SGUTILS_API GraphicsPlaceholderCI : public SGHandleClassInfo {
 public:
  const char* getName() const override;
  const char* getDescription() const override;
  const char* getDetailedDescription() const override;
  bool isAbstract() const override;
  bool classIsAbstract() const override;
  bool isSealed() const override;
  void initializeClass(COSClass* cls, const COSClient* client) override;
  // No data of its own: the Graphics block is all it has.
  void* allocateInstance(COSInterface* instance) override;
  bool willAllocateData() const override;
};
