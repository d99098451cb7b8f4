// Not installed; internal to sgplatform.
//
// The resource texts compiled into the library (message catalogs, theme
// colour table). The table itself is generated from resources/ at build time.
#pragma once

#include <span>
#include <string_view>

namespace foundation::resources {

struct Entry {
  std::string_view name;  // path below resources/, e.g. "messages/vcos.msg"
  std::string_view text;
};

// Every embedded resource, sorted by name.
std::span<const Entry> embedded() noexcept;

}  // namespace foundation::resources
