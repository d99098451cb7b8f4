// The message catalog, parsed once from the embedded catalog files.
#include "foundation/i18n/MessageCatalog.h"

#include <algorithm>
#include <map>

#include "foundation/src/EmbeddedResources.h"

namespace i18n {
namespace {

std::string_view trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

using Table = std::map<std::string, std::string, std::less<>>;

void parseCatalog(std::string_view text, Table& table) {
  std::string* current = nullptr;
  while (!text.empty()) {
    auto eol = text.find('\n');
    std::string_view line = text.substr(0, eol);
    text = eol == std::string_view::npos ? std::string_view() : text.substr(eol + 1);
    if (trim(line).empty() || trim(line).front() == '#') {
      current = nullptr;
      continue;
    }
    if ((line.front() == ' ' || line.front() == '\t') && current) {
      current->append("\n").append(trim(line));
      continue;
    }
    auto eq = line.find('=');
    if (eq == std::string_view::npos) {
      current = nullptr;
      continue;
    }
    auto [it, inserted] = table.insert_or_assign(std::string(trim(line.substr(0, eq))), std::string(trim(line.substr(eq + 1))));
    current = &it->second;
  }
}

const Table& table() {
  static const Table t = [] {
    Table result;
    for (const auto& entry : foundation::resources::embedded())
      if (entry.name.starts_with("messages/")) parseCatalog(entry.text, result);
    return result;
  }();
  return t;
}

}  // namespace

bool MessageCatalog::has(std::string_view id) noexcept { return table().find(id) != table().end(); }

std::string_view MessageCatalog::rawText(std::string_view id) noexcept {
  auto it = table().find(id);
  return it == table().end() ? std::string_view() : std::string_view(it->second);
}

std::string MessageCatalog::get_message(std::string_view id, std::span<const std::string> args) {
  auto it = table().find(id);
  if (it == table().end()) return std::string(id);
  return format(it->second, args);
}

std::vector<std::string_view> MessageCatalog::identifiers() {
  std::vector<std::string_view> ids;
  ids.reserve(table().size());
  for (const auto& [id, text] : table()) ids.emplace_back(id);
  return ids;
}

std::string MessageCatalog::format(std::string_view text, std::span<const std::string> args) {
  std::string out;
  out.reserve(text.size() + 16);
  for (size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c == '{' && i + 1 < text.size() && text[i + 1] == '{') {
      out.push_back('{');
      ++i;
    } else if (c == '{' && i + 2 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9' && text[i + 2] == '}') {
      size_t n = static_cast<size_t>(text[i + 1] - '1');
      if (n < args.size()) out.append(args[n]);
      i += 2;
    } else {
      out.push_back(c);
    }
  }
  return out;
}

}  // namespace i18n
