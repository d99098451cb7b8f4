// The theme colour table, parsed once from the embedded colors.tsv.
#include "foundation/uithemes/ThemeColors.h"

#include <cassert>
#include <map>

#include "foundation/src/EmbeddedResources.h"

namespace uithemes::utils {

namespace {

struct ColorPair {
  std::string light;
  std::string dark;
};

using Table = std::map<std::string, ColorPair, std::less<>>;

std::vector<std::string_view> splitTabs(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    auto tab = line.find('\t');
    fields.push_back(line.substr(0, tab));
    if (tab == std::string_view::npos) break;
    line.remove_prefix(tab + 1);
  }
  return fields;
}

Table parse(std::string_view text) {
  Table table;
  while (!text.empty()) {
    auto eol = text.find('\n');
    std::string_view line = text.substr(0, eol);
    text = eol == std::string_view::npos ? std::string_view() : text.substr(eol + 1);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;
    auto fields = splitTabs(line);
    assert(fields.size() == 3 && "colors.tsv: a row needs a variable, a light and a dark colour");
    if (fields.size() != 3 || fields[0] == "variable") continue;
    table.insert_or_assign(std::string(fields[0]), ColorPair{std::string(fields[1]), std::string(fields[2])});
  }
  return table;
}

const Table& table() {
  static const Table t = [] {
    for (const auto& entry : foundation::resources::embedded())
      if (entry.name == "themes/colors.tsv") return parse(entry.text);
    return Table();
  }();
  return t;
}

}  // namespace

std::optional<std::string> getColor(std::string_view variable, std::string_view theme) {
  const bool dark = theme == "dark";
  if (!dark && theme != "light") return std::nullopt;
  auto it = table().find(variable);
  if (it == table().end()) return std::nullopt;
  return dark ? it->second.dark : it->second.light;
}

std::vector<std::string> colorVariables() {
  std::vector<std::string> names;
  names.reserve(table().size());
  for (const auto& [name, colors] : table()) names.push_back(name);
  return names;
}

}  // namespace uithemes::utils
