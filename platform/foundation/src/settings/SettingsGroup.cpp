// Groups and single settings: dotted paths into the settings store.
#include "foundation/settings/SettingsGroup.h"

#include "foundation/core/except/Error.h"
#include "foundation/settings/Settings.h"
#include "foundation/settings/SettingsStore.h"
#include "foundation/src/settings/Utf.h"

namespace foundation::settings {

std::string SettingsGroup::fullName(std::string_view name) const {
  std::string full;
  full.reserve(path_.size() + 1 + name.size());
  if (!path_.empty()) full.append(path_).append(".");
  full.append(name);
  return full;
}

SettingsGroup SettingsGroup::group(std::string_view name) const { return SettingsGroup(fullName(name)); }

bool SettingsGroup::has(std::string_view name) const { return get(name).has_value(); }

std::optional<std::string> SettingsGroup::get(std::string_view name) const {
  return SettingsStore::instance().get(fullName(name));
}

std::string SettingsGroup::get(std::string_view name, std::string_view fallback) const {
  auto value = get(name);
  return value ? std::move(*value) : std::string(fallback);
}

std::u16string SettingsGroup::getUtf16(std::string_view name, std::u16string_view fallback) const {
  auto value = get(name);
  return value ? detail::utf8ToUtf16(*value) : std::u16string(fallback);
}

void SettingsGroup::set(std::string_view name, std::string_view value) const {
  SettingsStore::instance().set(fullName(name), value);
}

void SettingsGroup::setUtf16(std::string_view name, std::u16string_view value) const {
  set(name, detail::utf16ToUtf8(value));
}

bool SettingsGroup::remove(std::string_view name) const { return SettingsStore::instance().remove(fullName(name)); }

}  // namespace foundation::settings

foundation::settings::SettingsGroup getSettingsRoot() { return {}; }

foundation::settings::Setting getSettingsByFullName(std::string_view fullName) {
  using foundation::settings::SettingsStore;
  if (!SettingsStore::isValidFullName(fullName))
    throw foundation::core::except::Error("VANTEL:settings:InvalidName", fullName);
  auto dot = fullName.rfind('.');
  return {foundation::settings::SettingsGroup(std::string(fullName.substr(0, dot))),
          std::string(fullName.substr(dot + 1))};
}
