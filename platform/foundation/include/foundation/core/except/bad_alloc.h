// Memory exhaustion inside the platform or the library ("VANTEL:vcos:OutOfMemory").
#pragma once

#include "foundation/core/except/Error.h"

namespace foundation::core::except {

class FOUNDATION_API bad_alloc : public Error {
 public:
  bad_alloc() : Error(i18n::Message("VANTEL:vcos:OutOfMemory")) {}
  ~bad_alloc() override;

  std::unique_ptr<IMsgIDException> clone() const override;
  [[noreturn]] void rethrow() const override;
};

}  // namespace foundation::core::except
