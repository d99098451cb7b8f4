// The data of the event "Reset": the object that was reset.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSEventData.h"

class SGUTILS_API ResetGraphicsEvent : public COSEventData {
 public:
  explicit ResetGraphicsEvent(COSInterface* source);
  ~ResetGraphicsEvent() override;
};
