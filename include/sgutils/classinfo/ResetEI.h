// The event "Reset" of graphics objects: sent after an object was reset.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSEventInfo.h"

class SGUTILS_API ResetEI : public COSEventInfo {
 public:
  const char* getName() const override;
  const char* getDescription() const override;
  COSID getDataClassID() const override;
  // The interned name "Reset".
  static COSID eventId();
};
