// The common base of the reference blocks: one integer, the same for every
// block, so it is a constant rather than four bytes in each block.
#pragma once

#include <cstdint>

#include "sgutils/SgutilsExport.h"

class SGUTILS_API CVObject {
 public:
  CVObject() noexcept = default;
  std::int32_t getCVValue() const noexcept { return kValue; }

 private:
  static constexpr std::int32_t kValue = 5;
};
