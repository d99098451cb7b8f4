// Usage records: which features people use, as (product, component, event
// key, key-value pairs). Records go to one replaceable sink. By default they
// are dropped, or appended to the file that $SG_USAGE_LOG names (read on
// first use), one JSON object per line.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/PlatformExport.h"

namespace usagelog {

enum class UsageOption { defaultOption, immediate };

using KeyValues = std::vector<std::pair<std::string, std::string>>;

struct UsageRecord {
  std::string product;
  std::string component;
  std::string eventKey;
  KeyValues keyValues;
  UsageOption option = UsageOption::defaultOption;
};

using UsageSink = std::function<void(const UsageRecord&)>;

FOUNDATION_API void logUsageData(std::string_view product, std::string_view component, std::string_view eventKey,
                                 const KeyValues& keyValues, UsageOption option = UsageOption::defaultOption);

// Installs a sink and returns the one it replaces; an empty sink restores the
// default described above.
FOUNDATION_API UsageSink setUsageSink(UsageSink sink);

// The record as one line of JSON, without the line feed.
FOUNDATION_API std::string toJsonLine(const UsageRecord& record);

}  // namespace usagelog
