// Raised when the unique id counter has wrapped around: an internal
// exception that reports a broken invariant, with no identifier and no
// catalog text.
#pragma once

#include <exception>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API OutOfUniqueIDs : public std::exception {
 public:
  const char* what() const noexcept override { return "sgutils::OutOfUniqueIDs"; }
};

}  // namespace sgutils
