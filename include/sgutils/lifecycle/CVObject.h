// The common base of the reference blocks: one integer, set at construction.
#pragma once

#include <cstdint>

#include "sgutils/SgutilsExport.h"

class SGUTILS_API CVObject {
 public:
  CVObject() noexcept = default;
  std::int32_t getCVValue() const noexcept { return value_; }

 private:
  std::int32_t value_ = 5;
};
