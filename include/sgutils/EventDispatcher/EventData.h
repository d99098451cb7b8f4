// What a sender hands to the listeners of an EventDispatcher event; senders
// derive their own data from it.
#pragma once

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API EventData {
 public:
  virtual ~EventData();
};

}  // namespace sgutils
