// The exception family: formatting of what() and the clone/rethrow pairs.
#include "foundation/core/except/Error.h"
#include "foundation/core/except/IMsgIDException.h"
#include "foundation/core/except/bad_alloc.h"

namespace foundation::core::except {

IMsgIDException::~IMsgIDException() = default;

const char* IMsgIDException::what() const noexcept {
  if (what_.empty()) {
    try {
      what_ = message_.text();
    } catch (...) {
      return message_.id().c_str();
    }
  }
  return what_.c_str();
}

std::unique_ptr<IMsgIDException> IMsgIDException::clone() const { return std::make_unique<IMsgIDException>(*this); }
void IMsgIDException::rethrow() const { throw *this; }

Error::~Error() = default;
std::unique_ptr<IMsgIDException> Error::clone() const { return std::make_unique<Error>(*this); }
void Error::rethrow() const { throw *this; }

bad_alloc::~bad_alloc() = default;
std::unique_ptr<IMsgIDException> bad_alloc::clone() const { return std::make_unique<bad_alloc>(*this); }
void bad_alloc::rethrow() const { throw *this; }

}  // namespace foundation::core::except
