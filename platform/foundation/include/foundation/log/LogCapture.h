// Captures the log records written while it lives, for tests. While a capture
// is active the default standard-error output is held back, so captured
// records do not also clutter the test output.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "foundation/PlatformExport.h"

namespace foundation::log {

struct CapturedRecord {
  std::string channel;
  std::uint32_t level = 0;
  std::string text;
};

class FOUNDATION_API LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  // The records so far, in the order they were written.
  std::vector<CapturedRecord> records() const;
  void clear();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace foundation::log
