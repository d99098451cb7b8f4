// The settings file: where it lives, how it is read and how it is written.
#include "foundation/settings/SettingsStore.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "foundation/core/except/Error.h"
#include "foundation/core/except/WarningChannel.h"

namespace foundation::settings {

namespace {

constexpr const char* kFileName = "settings.conf";

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

bool isNameChar(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-';
}

std::string escape(std::string_view value) {
  std::string out;
  out.reserve(value.size());
  size_t lead = 0;
  while (lead < value.size() && value[lead] == ' ') ++lead;
  size_t trail = value.size();
  while (trail > lead && value[trail - 1] == ' ') --trail;
  for (size_t i = 0; i < value.size(); ++i) {
    char c = value[i];
    switch (c) {
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      case ' ': out += (i < lead || i >= trail) ? "\\s" : " "; break;
      default: out.push_back(c);
    }
  }
  return out;
}

// False for a dangling or unknown escape.
bool unescape(std::string_view text, std::string& out) {
  out.clear();
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      out.push_back(text[i]);
      continue;
    }
    if (++i == text.size()) return false;
    switch (text[i]) {
      case '\\': out.push_back('\\'); break;
      case 'n': out.push_back('\n'); break;
      case 'r': out.push_back('\r'); break;
      case 't': out.push_back('\t'); break;
      case 's': out.push_back(' '); break;
      default: return false;
    }
  }
  return true;
}

// Issued after the store's lock is released: a warning sink may read settings.
void warnCorrupt(const std::filesystem::path& file, const std::vector<int>& badLines) {
  for (int lineNo : badLines)
    core::except::WarningChannel::instance().issue(
        i18n::Message("VANTEL:settings:CorruptLine", file.string(), lineNo));
}

}  // namespace

SettingsStore::SettingsStore() : directory_(defaultDirectory()) {}

SettingsStore& SettingsStore::instance() {
  static SettingsStore store;
  return store;
}

std::filesystem::path SettingsStore::defaultDirectory() {
  if (const char* dir = std::getenv("SG_SETTINGS_DIR"); dir && *dir) return dir;
  if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg) return std::filesystem::path(xdg) / "sgutils";
  if (const char* home = std::getenv("HOME"); home && *home)
    return std::filesystem::path(home) / ".config" / "sgutils";
  return std::filesystem::path(".config") / "sgutils";
}

bool SettingsStore::isValidFullName(std::string_view fullName) noexcept {
  if (fullName.empty()) return false;
  int parts = 1;
  bool partEmpty = true;
  for (char c : fullName) {
    if (c == '.') {
      if (partEmpty) return false;
      ++parts;
      partEmpty = true;
    } else if (isNameChar(c)) {
      partEmpty = false;
    } else {
      return false;
    }
  }
  return !partEmpty && parts >= 2;
}

std::filesystem::path SettingsStore::directory() const {
  std::lock_guard lock(mutex_);
  return directory_;
}

std::filesystem::path SettingsStore::filePath() const {
  std::lock_guard lock(mutex_);
  return directory_ / kFileName;
}

std::filesystem::path SettingsStore::useDirectory(std::filesystem::path directory) {
  std::vector<int> badLines;
  std::filesystem::path old;
  {
    std::lock_guard lock(mutex_);
    old = std::exchange(directory_, std::move(directory));
    values_.clear();
    loaded_ = false;
    loadLocked(badLines);
  }
  warnCorrupt(filePath(), badLines);
  return old;
}

void SettingsStore::loadLocked(std::vector<int>& badLines) const {
  if (loaded_) return;
  loaded_ = true;
  std::filesystem::path file = directory_ / kFileName;
  std::ifstream in(file, std::ios::binary);
  if (!in) return;  // no file yet: no settings
  std::string line;
  std::string value;
  int lineNo = 0;
  while (std::getline(in, line)) {
    ++lineNo;
    std::string_view text = trim(line);
    if (text.empty() || text.front() == '#') continue;
    auto eq = text.find('=');
    std::string_view name = eq == std::string_view::npos ? text : trim(text.substr(0, eq));
    if (eq == std::string_view::npos || !isValidFullName(name) || !unescape(trim(text.substr(eq + 1)), value)) {
      badLines.push_back(lineNo);
      continue;
    }
    values_.insert_or_assign(std::string(name), value);
  }
}

void SettingsStore::writeLocked(const std::map<std::string, std::string, std::less<>>& values) const {
  std::filesystem::path file = directory_ / kFileName;
  std::error_code ec;
  std::filesystem::create_directories(directory_, ec);
  if (ec) throw core::except::Error("VANTEL:settings:WriteFailed", file.string(), ec.message());

  std::ostringstream text;
  text << "# Settings of sgutils: one \"group.name = value\" per line.\n";
  for (const auto& [name, value] : values) text << name << " = " << escape(value) << '\n';
  const std::string body = text.str();

  // Unique per process, so two processes writing at once do not share a file.
  std::filesystem::path temp = file;
  temp += ".tmp" + std::to_string(::getpid());
  {
    std::ofstream out(temp, std::ios::binary | std::ios::trunc);
    out.write(body.data(), static_cast<std::streamsize>(body.size()));
    out.flush();
    if (!out) {
      std::filesystem::remove(temp, ec);
      throw core::except::Error("VANTEL:settings:WriteFailed", file.string(), "cannot write the file");
    }
  }
  std::filesystem::rename(temp, file, ec);
  if (ec) {
    std::error_code ignored;
    std::filesystem::remove(temp, ignored);
    throw core::except::Error("VANTEL:settings:WriteFailed", file.string(), ec.message());
  }
}

void SettingsStore::ensureLoaded() const {
  std::vector<int> badLines;
  {
    std::lock_guard lock(mutex_);
    loadLocked(badLines);
  }
  warnCorrupt(filePath(), badLines);
}

std::optional<std::string> SettingsStore::get(std::string_view fullName) const {
  ensureLoaded();
  std::lock_guard lock(mutex_);
  auto it = values_.find(fullName);
  if (it == values_.end()) return std::nullopt;
  return it->second;
}

void SettingsStore::set(std::string_view fullName, std::string_view value) {
  if (!isValidFullName(fullName)) throw core::except::Error("VANTEL:settings:InvalidName", fullName);
  ensureLoaded();
  std::lock_guard lock(mutex_);
  // Written aside first, so a failed write leaves the old value in place.
  auto next = values_;
  next.insert_or_assign(std::string(fullName), std::string(value));
  writeLocked(next);
  values_.swap(next);
}

bool SettingsStore::remove(std::string_view fullName) {
  ensureLoaded();
  std::lock_guard lock(mutex_);
  auto it = values_.find(fullName);
  if (it == values_.end()) return false;
  auto next = values_;
  next.erase(std::string(fullName));
  writeLocked(next);
  values_.swap(next);
  return true;
}

}  // namespace foundation::settings
