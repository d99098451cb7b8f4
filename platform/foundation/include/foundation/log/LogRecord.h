// One log record being built: a stream that writes to its channel when the
// record goes out of scope. Made only by FOUNDATION_LOG, after the channel's
// bit test has passed, so no text is built for a silent channel.
#pragma once

#include <cstdint>
#include <sstream>

#include "foundation/PlatformExport.h"
#include "foundation/log/Logger.h"

namespace foundation::log {

class FOUNDATION_API LogRecord {
 public:
  LogRecord(const Logger& logger, std::uint32_t level) : logger_(logger), level_(level) {}
  LogRecord(const LogRecord&) = delete;
  LogRecord& operator=(const LogRecord&) = delete;
  ~LogRecord() { logger_.write(level_, stream_.view()); }

  std::ostream& stream() noexcept { return stream_; }

 private:
  const Logger& logger_;
  std::uint32_t level_;
  std::ostringstream stream_;
};

}  // namespace foundation::log

// FOUNDATION_LOG(logger, level) << a << b;  The stream expression is evaluated
// only when the level's bit is on.
#define FOUNDATION_LOG(logger, level)        \
  if (!(logger).isOn(level)) {               \
  } else                                     \
    ::foundation::log::LogRecord((logger), (level)).stream()
