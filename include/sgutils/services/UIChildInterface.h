// The side of a graphics object that a user-interface container speaks to.
// A class whose Graphics data block implements it is a user-interface child.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

class SGUTILS_API UIChildInterface {
 public:
  virtual ~UIChildInterface();
  // The object's Graphics data block as this interface; null for an object
  // that is no graphics object or whose block is no user-interface child.
  static UIChildInterface* getUIChildInterface(const COSInterfacePtr& object);
};

}  // namespace sgutils
