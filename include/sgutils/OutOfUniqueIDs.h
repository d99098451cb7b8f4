// Raised when the unique id counter has wrapped around: an internal error,
// without a catalog text.
#pragma once

#include "foundation/core/except/Error.h"
#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API OutOfUniqueIDs : public foundation::core::except::Error {
 public:
  OutOfUniqueIDs();
  ~OutOfUniqueIDs() override;
};

}  // namespace sgutils
