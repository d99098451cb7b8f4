// The one channel for warnings: prints "Warning: <text>" through a replaceable
// sink, keeps the last warning's identifier and text, and can be switched off
// per identifier (a switched-off warning is neither printed nor recorded).
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"
#include "foundation/i18n/Message.h"

namespace foundation::core::except {

class FOUNDATION_API WarningChannel {
 public:
  // Receives the whole line, "Warning: <text>" and a line feed.
  using Sink = std::function<void(std::string_view line)>;

  static WarningChannel& instance();

  void issue(const i18n::Message& message);

  bool isEnabled(std::string_view id) const;
  // "all" switches every warning at once and forgets the per-id switches.
  void setEnabled(std::string_view id, bool enabled);

  const std::string& lastId() const noexcept { return lastId_; }
  const std::string& lastText() const noexcept { return lastText_; }
  void setLast(std::string id, std::string text);

  // Installs a sink and returns the one it replaces; an empty sink restores
  // the default, which writes to standard error.
  Sink setSink(Sink sink);

 private:
  WarningChannel();

  Sink sink_;
  std::set<std::string, std::less<>> disabled_;  // ids switched off
  std::set<std::string, std::less<>> enabled_;   // ids switched on while all are off
  bool allEnabled_ = true;
  std::string lastId_;
  std::string lastText_;
};

}  // namespace foundation::core::except
