// The data of the event "Hit": a hit as the picking layer reports it. The
// event is sent by fireHitEvent; listeners in C++ read the hit from here.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "sgutils/interaction/HitImpl.h"
#include "vcos/COSEventData.h"

namespace graphics::eventdata {

class SGUTILS_API HitEventData : public COSEventData {
 public:
  HitEventData(COSInterface* source, HitImpl hit);
  ~HitEventData() override;
  const HitImpl& hit() const noexcept { return hit_; }

 private:
  HitImpl hit_;
};

// Sends "Hit" from `object` with the hit as its data, as the public client.
// A null object, or one deleted or being deleted, gets nothing.
SGUTILS_API void fireHitEvent(const COSInterfacePtr& object, const HitImpl& hit);

}  // namespace graphics::eventdata
