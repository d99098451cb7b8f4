// Base of every error the platform and the library raise: an exception that
// carries a message identifier and its arguments. what() is the catalog text.
#pragma once

#include <exception>
#include <memory>
#include <string>

#include "foundation/PlatformExport.h"
#include "foundation/i18n/Message.h"

namespace foundation::core::except {

class FOUNDATION_API IMsgIDException : public std::exception {
 public:
  explicit IMsgIDException(i18n::Message message) : message_(std::move(message)) {}
  ~IMsgIDException() override;

  const i18n::Message& message() const noexcept { return message_; }
  // "VANTEL:sg:BadChildren"
  const std::string& identifier() const noexcept { return message_.id(); }
  const std::string& getMessageID() const noexcept { return message_.id(); }
  // The formatted text; built on first use.
  const char* what() const noexcept override;

  // Copies the most derived exception, so that it can be stored and raised again.
  virtual std::unique_ptr<IMsgIDException> clone() const;
  [[noreturn]] virtual void rethrow() const;

 private:
  i18n::Message message_;
  mutable std::string what_;
};

}  // namespace foundation::core::except
