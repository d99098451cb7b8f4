// Collects the usage records logged while it lives, then puts back the sink
// it replaced. For tests.
#pragma once

#include <vector>

#include "foundation/PlatformExport.h"
#include "foundation/usagelog/UsageLog.h"

namespace usagelog {

class FOUNDATION_API UsageCapture {
 public:
  UsageCapture();
  ~UsageCapture();
  UsageCapture(const UsageCapture&) = delete;
  UsageCapture& operator=(const UsageCapture&) = delete;

  const std::vector<UsageRecord>& records() const noexcept { return records_; }

 private:
  std::vector<UsageRecord> records_;
  UsageSink previous_;
};

}  // namespace usagelog
