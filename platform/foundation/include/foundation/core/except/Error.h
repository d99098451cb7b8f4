// The ordinary error: Error("VANTEL:sg:BadChildren", arg, ...).
#pragma once

#include "foundation/core/except/IMsgIDException.h"

namespace foundation::core::except {

class FOUNDATION_API Error : public IMsgIDException {
 public:
  explicit Error(i18n::Message message) : IMsgIDException(std::move(message)) {}
  template <class... Args>
  explicit Error(std::string id, Args&&... args)
      : IMsgIDException(i18n::Message(std::move(id), std::forward<Args>(args)...)) {}
  ~Error() override;

  std::unique_ptr<IMsgIDException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

}  // namespace foundation::core::except
