// One setting addressed by its full name ("vantel.appearance.CurrentTheme"):
// its group and its name, with the group's reads and writes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"
#include "foundation/settings/SettingsGroup.h"

namespace foundation::settings {

class FOUNDATION_API Setting {
 public:
  Setting(SettingsGroup group, std::string name) : group_(std::move(group)), name_(std::move(name)) {}

  const SettingsGroup& group() const noexcept { return group_; }
  const std::string& name() const noexcept { return name_; }
  std::string fullName() const { return group_.fullName(name_); }

  bool exists() const { return group_.has(name_); }
  std::optional<std::string> get() const { return group_.get(name_); }
  std::u16string getUtf16(std::u16string_view fallback) const { return group_.getUtf16(name_, fallback); }
  void set(std::string_view value) const { group_.set(name_, value); }
  bool remove() const { return group_.remove(name_); }

 private:
  SettingsGroup group_;
  std::string name_;
};

}  // namespace foundation::settings
