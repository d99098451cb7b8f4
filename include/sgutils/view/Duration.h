// Measures how long something takes on the steady clock, from construction
// on. A copy measures from the same start as the original.
#pragma once

#include <cstdint>
#include <memory>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API Duration {
 public:
  Duration();
  Duration(const Duration& other);
  Duration& operator=(const Duration& other);
  ~Duration();

  // Seconds since the start; reading does not stop or restart the measurement.
  double getDurationInSeconds() const;

 private:
  // Nanoseconds on the steady clock. Never null: there are no moves that
  // could empty it, so a "moved" Duration is a copy.
  std::unique_ptr<std::int64_t> start_;
};

}  // namespace sgutils
