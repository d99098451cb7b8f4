// The store behind the settings: every setting by its full name
// ("vantel.appearance.CurrentTheme"), kept in one file in the user's config
// folder and read on first use.
//
// Folder: $SG_SETTINGS_DIR when set, else $XDG_CONFIG_HOME/sgutils, else
// ~/.config/sgutils. File: "settings.conf", one "group.name = value" per line,
// sorted by name; lines that start with '#' and blank lines are ignored. In
// a value, a backslash escapes: "\\" "\n" "\r" "\t", and "\s" is a blank
// (written for leading and trailing blanks, which are otherwise trimmed). A
// line that does not parse is skipped with the warning
// "VANTEL:settings:CorruptLine"; the next write drops it from the file.
// Every write rewrites the whole file through a temporary file and a rename,
// so the file is never seen half written; a write that fails raises
// "VANTEL:settings:WriteFailed" and leaves the setting as it was.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PlatformExport.h"

namespace foundation::settings {

class FOUNDATION_API SettingsStore {
 public:
  static SettingsStore& instance();

  // The folder the environment names (see above).
  static std::filesystem::path defaultDirectory();

  std::optional<std::string> get(std::string_view fullName) const;
  void set(std::string_view fullName, std::string_view value);
  // False when there was no such setting.
  bool remove(std::string_view fullName);

  std::filesystem::path directory() const;
  std::filesystem::path filePath() const;
  // Switches to the file in another folder and reads it; returns the folder
  // used before. Tests give each case a folder of its own.
  std::filesystem::path useDirectory(std::filesystem::path directory);

  // A full name is two or more dot-separated parts of letters, digits, '_'
  // and '-'; the last part is the setting's name, the rest its group.
  static bool isValidFullName(std::string_view fullName) noexcept;

 private:
  SettingsStore();
  // Reads the file once; the numbers of lines that did not parse go to badLines.
  void loadLocked(std::vector<int>& badLines) const;
  // Reads the file if needed and issues the warnings, outside the lock.
  void ensureLoaded() const;
  void writeLocked(const std::map<std::string, std::string, std::less<>>& values) const;

  mutable std::mutex mutex_;
  std::filesystem::path directory_;
  mutable bool loaded_ = false;
  mutable std::map<std::string, std::string, std::less<>> values_;
};

}  // namespace foundation::settings
