// The warning channel.
#include "foundation/core/except/WarningChannel.h"

#include <cstdio>

namespace foundation::core::except {
namespace {

void writeToStderr(std::string_view line) {
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

WarningChannel::WarningChannel() : sink_(writeToStderr) {}

WarningChannel& WarningChannel::instance() {
  static WarningChannel channel;
  return channel;
}

bool WarningChannel::isEnabled(std::string_view id) const {
  if (allEnabled_) return disabled_.find(id) == disabled_.end();
  return enabled_.find(id) != enabled_.end();
}

void WarningChannel::setEnabled(std::string_view id, bool enabled) {
  if (id == "all") {
    allEnabled_ = enabled;
    disabled_.clear();
    enabled_.clear();
    return;
  }
  if (enabled) {
    disabled_.erase(std::string(id));
    if (!allEnabled_) enabled_.emplace(id);
  } else {
    enabled_.erase(std::string(id));
    if (allEnabled_) disabled_.emplace(id);
  }
}

void WarningChannel::issue(const i18n::Message& message) {
  if (!isEnabled(message.id())) return;
  std::string text = message.text();
  std::string line;
  line.reserve(text.size() + 10);
  line.append("Warning: ").append(text).append("\n");
  lastId_ = message.id();
  lastText_ = std::move(text);
  sink_(line);
}

void WarningChannel::setLast(std::string id, std::string text) {
  lastId_ = std::move(id);
  lastText_ = std::move(text);
}

WarningChannel::Sink WarningChannel::setSink(Sink sink) {
  Sink old = std::move(sink_);
  sink_ = sink ? std::move(sink) : Sink(writeToStderr);
  return old;
}

}  // namespace foundation::core::except
