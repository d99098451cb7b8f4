// How another library shows an existing property under a new face: an alias,
// an initial value (text, converted to the property's type) and get and set
// access modes. A default-made descriptor is invalid.
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API PropertyDescriptor {
 public:
  // 0 keeps the wrapped property's access; 1 private, 2 protected, 3 public.
  enum AccessMode : unsigned char { Unchanged = 0, Private = 1, Protected = 2, Public = 3 };

  PropertyDescriptor() = default;
  // `name` must not be null.
  explicit PropertyDescriptor(const char* name);

  bool isValid() const noexcept { return valid_; }
  std::string getName() const { return name_; }
  const char* getAlias() const noexcept { return alias_.empty() ? nullptr : alias_.c_str(); }
  const char* getInitialValue() const noexcept { return initialValue_.empty() ? nullptr : initialValue_.c_str(); }
  bool hasAlias() const noexcept { return !alias_.empty(); }
  bool hasInitialValue() const noexcept { return !initialValue_.empty(); }
  void setAlias(std::string alias) { alias_ = std::move(alias); }
  void setInitialValue(std::string value) { initialValue_ = std::move(value); }
  AccessMode getGetAccess() const noexcept { return getAccess_; }
  AccessMode getSetAccess() const noexcept { return setAccess_; }
  void setGetAccess(AccessMode mode) noexcept { getAccess_ = mode; }
  void setSetAccess(AccessMode mode) noexcept { setAccess_ = mode; }
  // Valid and changing nothing of the wrapped property.
  bool isDefault() const noexcept {
    return valid_ && alias_.empty() && initialValue_.empty() && getAccess_ == Unchanged && setAccess_ == Unchanged;
  }

 private:
  bool valid_ = false;
  std::string name_;
  std::string alias_;
  std::string initialValue_;
  AccessMode getAccess_ = Unchanged;
  AccessMode setAccess_ = Unchanged;
};

}  // namespace sgutils
