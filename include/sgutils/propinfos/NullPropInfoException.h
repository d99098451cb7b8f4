// Raised when a property or method description cannot be built or found;
// it carries no message of its own.
#pragma once

#include <exception>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API NullPropInfoException : public std::exception {
 public:
  const char* what() const noexcept override { return "sgutils::NullPropInfoException"; }
};

}  // namespace sgutils
