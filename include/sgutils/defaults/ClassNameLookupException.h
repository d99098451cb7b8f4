// The class-name map gave a full class name without a package; it carries no
// message of its own.
#pragma once

#include <exception>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API ClassNameLookupException : public std::exception {
 public:
  const char* what() const noexcept override { return "sgutils::ClassNameLookupException"; }
};

}  // namespace sgutils
