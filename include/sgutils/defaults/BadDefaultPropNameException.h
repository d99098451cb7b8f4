// A compact default name ("defaultLineColor") without the prefix "default" or
// "factory"; it carries no message of its own.
#pragma once

#include <exception>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API BadDefaultPropNameException : public std::exception {
 public:
  const char* what() const noexcept override { return "sgutils::BadDefaultPropNameException"; }
};

}  // namespace sgutils
