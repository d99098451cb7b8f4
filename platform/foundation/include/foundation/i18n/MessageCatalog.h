// The message catalog: one text per message identifier, read from the
// catalog files compiled into the library (resources/messages/*.msg).
//
// File format, one entry per line:
//     # a comment
//     VANTEL:sg:BadChildren = Children must be graphics objects of class {1}.
// {1} to {9} stand for the message's arguments; "{{" writes a brace. A text
// may continue on following lines that start with whitespace; they are joined
// with a line feed.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/PlatformExport.h"

namespace i18n {

class FOUNDATION_API MessageCatalog {
 public:
  // True when the catalog has a text for this identifier.
  static bool has(std::string_view id) noexcept;
  // The raw text with its placeholders; empty when the catalog has none.
  static std::string_view rawText(std::string_view id) noexcept;
  // The text with the arguments put in; the id itself when there is no text.
  static std::string get_message(std::string_view id, std::span<const std::string> args = {});
  // Every identifier that has a text, sorted.
  static std::vector<std::string_view> identifiers();
  // Puts arguments into a text: "{n}" is argument n (1-based), "{{" a brace.
  static std::string format(std::string_view text, std::span<const std::string> args);
};

}  // namespace i18n
