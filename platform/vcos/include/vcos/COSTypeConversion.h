// A conversion between two types. convert returns a new value of the target
// type owned by the caller, or raises "VANTEL:vcos:ConversionFailed".
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSValue.h"

class VCOS_API COSTypeConversion {
 public:
  virtual ~COSTypeConversion();
  virtual COSValue convert(COSValue from) const = 0;
};
