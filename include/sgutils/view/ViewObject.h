// The view that a scene viewer's parent hands out: a polymorphic base whose
// concrete kind only the view layer knows.
#pragma once

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API ViewObject {
 public:
  virtual ~ViewObject();
};

}  // namespace sgutils
