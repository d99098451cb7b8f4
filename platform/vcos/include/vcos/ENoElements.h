// Raised by COSIterator::nextElement past the end of a walk.
#pragma once

#include <exception>

#include "foundation/PlatformExport.h"

class VCOS_API ENoElements : public std::exception {
 public:
  const char* what() const noexcept override;
};
