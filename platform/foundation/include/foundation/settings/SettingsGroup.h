// A group of settings ("vantel.appearance"): a light view into the settings
// store that reads and writes the settings below one dotted path.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/PlatformExport.h"

namespace foundation::settings {

class FOUNDATION_API SettingsGroup {
 public:
  // The root group has an empty path.
  SettingsGroup() = default;
  explicit SettingsGroup(std::string path) : path_(std::move(path)) {}

  const std::string& path() const noexcept { return path_; }

  // A group below this one; `name` may itself be dotted ("vantel.appearance").
  SettingsGroup group(std::string_view name) const;

  bool has(std::string_view name) const;
  std::optional<std::string> get(std::string_view name) const;
  std::string get(std::string_view name, std::string_view fallback) const;
  // The value as UTF-16 text, or `fallback` when the setting does not exist.
  std::u16string getUtf16(std::string_view name, std::u16string_view fallback) const;

  // Raises "VANTEL:settings:InvalidName" for a name that cannot be stored.
  void set(std::string_view name, std::string_view value) const;
  void setUtf16(std::string_view name, std::u16string_view value) const;
  bool remove(std::string_view name) const;

  // The full name of a setting of this group.
  std::string fullName(std::string_view name) const;

 private:
  std::string path_;
};

}  // namespace foundation::settings
