// The usage-log sink: dropped by default, or appended to $SG_USAGE_LOG.
#include "foundation/usagelog/UsageLog.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>

#include "foundation/usagelog/UsageCapture.h"

namespace usagelog {

namespace {

void appendJsonString(std::string& out, std::string_view text) {
  out.push_back('"');
  for (char c : text) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          char buf[8];
          std::snprintf(buf, sizeof buf, "\\u%04x", static_cast<unsigned>(static_cast<unsigned char>(c)));
          out += buf;
        } else {
          out.push_back(c);
        }
    }
  }
  out.push_back('"');
}

void defaultSink(const UsageRecord& record) {
  static const std::string path = [] {
    const char* env = std::getenv("SG_USAGE_LOG");
    return std::string(env ? env : "");
  }();
  if (path.empty()) return;
  // A log that cannot be written is not worth failing a command for.
  std::ofstream out(path, std::ios::app | std::ios::binary);
  if (out) out << toJsonLine(record) << '\n';
}

struct SinkHolder {
  std::mutex mutex;
  UsageSink sink = defaultSink;
};

SinkHolder& holder() {
  static SinkHolder h;
  return h;
}

}  // namespace

std::string toJsonLine(const UsageRecord& record) {
  std::string out = "{\"product\":";
  appendJsonString(out, record.product);
  out += ",\"component\":";
  appendJsonString(out, record.component);
  out += ",\"event\":";
  appendJsonString(out, record.eventKey);
  out += ",\"data\":{";
  for (std::size_t i = 0; i < record.keyValues.size(); ++i) {
    if (i) out.push_back(',');
    appendJsonString(out, record.keyValues[i].first);
    out.push_back(':');
    appendJsonString(out, record.keyValues[i].second);
  }
  out += "}}";
  return out;
}

void logUsageData(std::string_view product, std::string_view component, std::string_view eventKey,
                  const KeyValues& keyValues, UsageOption option) {
  UsageRecord record{std::string(product), std::string(component), std::string(eventKey), keyValues, option};
  UsageSink sink;
  {
    std::lock_guard lock(holder().mutex);
    sink = holder().sink;
  }
  sink(record);
}

UsageSink setUsageSink(UsageSink sink) {
  std::lock_guard lock(holder().mutex);
  UsageSink old = std::move(holder().sink);
  holder().sink = sink ? std::move(sink) : UsageSink(defaultSink);
  return old;
}

UsageCapture::UsageCapture()
    : previous_(setUsageSink([this](const UsageRecord& record) { records_.push_back(record); })) {}

UsageCapture::~UsageCapture() { setUsageSink(std::move(previous_)); }

}  // namespace usagelog
