// Base of the class infos of meta classes: the classes whose instances are
// classes, properties, methods and events. Their instances are made by the
// class system, never by a constructor.
#pragma once

#include "vcos/COSClassInfo.h"

class VCOS_API MetaClassBase : public COSClassInfo {
 public:
  bool isSealed() const override;
  bool isHidden() const override;
};
