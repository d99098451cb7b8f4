// A class info for an abstract class: no instances, subclasses allowed.
#pragma once

#include "vcos/COSClassInfo.h"

class VCOS_API AbstractClassInfo : public COSClassInfo {
 public:
  bool isAbstract() const override;
  bool classIsAbstract() const override;
  bool isSealed() const override;
};
