// Figures made by the interactive figure builder carry a dynamic property
// "FormbenchFigure"; code that treats such figures differently asks here.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"

namespace sgutils {

class SGUTILS_API FormbenchFigureUtils {
 public:
  // The object has a dynamic property "FormbenchFigure" of its own.
  static bool hasFormbenchFigureProperty(const COSInterfacePtr& object);
};

}  // namespace sgutils
