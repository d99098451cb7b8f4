// A message identifier with its arguments: the unit that errors, warnings and
// catalog look-ups pass around. "VANTEL:sg:BadChildren" is catalog
// "VANTEL:sg" and key "BadChildren".
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/PlatformExport.h"

namespace i18n {

class FOUNDATION_API Message {
 public:
  Message() = default;
  explicit Message(std::string id) : id_(std::move(id)) {}
  Message(std::string id, std::vector<std::string> args) : id_(std::move(id)), args_(std::move(args)) {}

  // Arguments may be text or numbers; numbers are written as a person reads them.
  template <class... Args>
    requires(sizeof...(Args) > 0)
  explicit Message(std::string id, Args&&... args) : id_(std::move(id)) {
    args_.reserve(sizeof...(Args));
    (args_.push_back(argumentText(std::forward<Args>(args))), ...);
  }

  // Joins catalog and key: Message::fromParts("VANTEL:sg:default_child_strategy", "IllegalPermutation").
  template <class... Args>
  static Message fromParts(std::string_view catalog, std::string_view key, Args&&... args) {
    std::string id;
    id.reserve(catalog.size() + 1 + key.size());
    id.append(catalog).append(":").append(key);
    if constexpr (sizeof...(Args) == 0)
      return Message(std::move(id));
    else
      return Message(std::move(id), std::forward<Args>(args)...);
  }

  const std::string& id() const noexcept { return id_; }
  // Everything before the last ':'; empty for an id without one.
  std::string_view catalog() const noexcept;
  // Everything after the last ':'.
  std::string_view key() const noexcept;
  const std::vector<std::string>& arguments() const noexcept { return args_; }

  // The catalog text with the arguments put in; the id itself for an id the
  // catalog does not know (internal errors have no text).
  std::string text() const;

  static std::string argumentText(std::string_view s) { return std::string(s); }
  static std::string argumentText(const char* s) { return s ? std::string(s) : std::string(); }
  static std::string argumentText(std::string&& s) { return std::move(s); }
  static std::string argumentText(const std::string& s) { return s; }
  static std::string argumentText(char c) { return std::string(1, c); }
  static std::string argumentText(bool b) { return b ? "true" : "false"; }
  template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>)
  static std::string argumentText(T v) {
    return std::to_string(v);
  }
  static std::string argumentText(double v);

 private:
  std::string id_;
  std::vector<std::string> args_;
};

}  // namespace i18n
