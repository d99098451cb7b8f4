// An error raised by a script (error('id:part', 'text')), or rebuilt from a
// caught error: it carries its own text, because a script's identifiers have
// no catalog entry.
#pragma once

#include <exception>
#include <string>
#include <string_view>

#include <foundation/core/except/Error.h>

namespace sgsh {

class ScriptError : public foundation::core::except::Error {
 public:
  ScriptError(std::string identifier, std::string text)
      : Error(i18n::Message(std::move(identifier))), text_(std::move(text)) {}
  ~ScriptError() override;

  const char* what() const noexcept override { return text_.c_str(); }
  std::unique_ptr<foundation::core::except::IMsgIDException> clone() const override;
  [[noreturn]] void rethrow() const override;

 private:
  std::string text_;
};

// The identifier and text under which any exception reaches a script's
// catch and the top level: a message exception keeps its own; memory
// exhaustion, length and range errors of the standard library and any
// other exception get identifiers of their own, so no error escapes a
// try/catch or reaches the user without one.
struct ErrorIdentity {
  std::string identifier;
  std::string message;
};
ErrorIdentity identify(const std::exception& e);

// True for "component:component[:...]", each component a letter followed
// by letters, digits, '_' or '-': the identifiers error() accepts.
bool isWellFormedIdentifier(std::string_view id) noexcept;

}  // namespace sgsh
