// An error raised by a script (error('id:part', 'text')), or rebuilt from a
// caught error: it carries its own text, because a script's identifiers have
// no catalog entry.
#pragma once

#include <string>

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

}  // namespace sgsh
