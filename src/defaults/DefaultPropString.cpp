// Parsing and joining of default-value names (DefaultPropString.h).
#include "sgutils/defaults/DefaultPropString.h"

#include <algorithm>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/ClassNameMap.h"
#include "sgutils/defaults/BadDefaultPropNameException.h"
#include "sgutils/defaults/ClassNameLookupException.h"

namespace sgutils {

namespace {

constexpr std::size_t kPrefixLength = 7;  // "default", "factory"

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string lowered(std::string_view s) {
  std::string out(s);
  std::transform(out.begin(), out.end(), out.begin(), lower);
  return out;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

bool beginsWithPrefix(const std::string& name, const char* prefix) {
  return name.size() >= kPrefixLength && (name[0] == prefix[0] || name[0] == upper(prefix[0])) &&
         name.compare(1, kPrefixLength - 1, prefix + 1) == 0;
}

// The first entry of the class-name map whose key `text` begins with; the
// map's order makes it the longest such key.
const sgdatatypes::typemap::ClassNameMap::value_type* shortNameAtStartOf(std::string_view text) {
  for (const auto& entry : sgdatatypes::typemap::getClassNameMap())
    if (text.starts_with(entry.first)) return &entry;
  return nullptr;
}

}  // namespace

DefaultPropString::DefaultPropString(const std::string& name, bool keepCase) : keepCase_(keepCase) {
  parsePropString(name);
}

DefaultPropString::DefaultPropString(const std::string& namespaceName, const std::string& className,
                                     const std::string& propName, bool keepCase)
    : namespaceName_(namespaceName), className_(className), propName_(propName), keepCase_(keepCase) {}

void DefaultPropString::parsePropString(const std::string& name) {
  if (name.find(separator_) != std::string::npos)
    parseDotted(name);
  else
    parseCompact(name);
}

void DefaultPropString::parseDotted(const std::string& s) {
  std::vector<std::string_view> tokens;
  std::string_view rest(s);
  while (!rest.empty()) {
    const std::size_t dot = rest.find(separator_);
    std::string_view token = rest.substr(0, dot);
    if (!token.empty()) tokens.push_back(token);
    if (dot == std::string_view::npos) break;
    rest.remove_prefix(dot + 1);
  }
  const std::size_t n = tokens.size();
  if (n < 3) return;  // refused later, when the name is used
  prefix_ = tokens[0];
  className_ = tokens[n - 2];
  propName_ = tokens[n - 1];
  if (n == 3) return;
  // Every middle token, with its dots, is the namespace.
  const std::size_t length = s.size() - prefix_.size() - className_.size() - propName_.size() - 3;
  namespaceName_ = s.substr(prefix_.size() + 1, length);
}

void DefaultPropString::parseCompact(std::string s) {
  if (!s.empty()) s[0] = lower(s[0]);
  if (s.size() < kPrefixLength || !(s.starts_with("default") || s.starts_with("factory")))
    throw BadDefaultPropNameException();
  prefix_ = s.substr(0, kPrefixLength);
  s.erase(0, kPrefixLength);
  if (s.empty()) throw foundation::core::except::Error("VANTEL:sgutils:EmptyClassName");

  // Leave at least one character for the property; a name without one
  // ("defaultLine") is found on the second try.
  std::string_view withoutLast(s.data(), s.size() - 1);
  const auto* match = shortNameAtStartOf(keepCase_ ? std::string(withoutLast) : lowered(withoutLast));
  if (!match) match = shortNameAtStartOf(keepCase_ ? s : lowered(s));
  if (!match) throw foundation::core::except::Error("VANTEL:sgutils:InvalidClassName", s);

  const std::string& fullName = match->second;
  const std::size_t dot = fullName.rfind('.');
  if (fullName.empty() || dot == std::string::npos) throw ClassNameLookupException();
  namespaceName_ = fullName.substr(0, dot);
  className_ = fullName.substr(dot + 1);
  propName_ = s.substr(match->first.size());
  if (!keepCase_ && !propName_.empty()) propName_[0] = upper(propName_[0]);
}

std::string DefaultPropString::getAsCanonicalStr() const {
  return prefix_ + separator_ + className_ + separator_ + propName_;
}

std::string DefaultPropString::getAsCompatStr() const {
  const auto& reverse = sgdatatypes::typemap::getReverseClassNameMap();
  std::string result = prefix_;
  auto it = reverse.find(namespaceName_ + separator_ + className_);
  if (it != reverse.end() && !it->second.empty()) {
    result += upper(it->second[0]);
    result.append(it->second, 1);
  } else {
    result += className_;
  }
  return result + propName_;
}

bool DefaultPropString::isSettingDefaultParent() const { return equalsIgnoringCase(propName_, "parent"); }

bool DefaultPropString::isDefaultProp(const std::string& name) { return beginsWithPrefix(name, "default"); }

bool DefaultPropString::isFactoryProp(const std::string& name) { return beginsWithPrefix(name, "factory"); }

bool DefaultPropString::queryingAllClassDefaults(const std::string& name) {
  const std::string_view rest = std::string_view(name).substr(kPrefixLength);  // out_of_range when shorter
  for (const auto& entry : sgdatatypes::typemap::getClassNameMap()) {
    const std::string_view key = std::string_view(entry.first).substr(0, rest.size());
    if (equalsIgnoringCase(key, rest)) return true;
  }
  return false;
}

}  // namespace sgutils
