// How another library shows an existing method under a new face: its name
// and an access mode (0 keeps the wrapped method's access).
#pragma once

#include <string>

#include "sgutils/SgutilsExport.h"

namespace sgutils {

class SGUTILS_API MethodDescriptor {
 public:
  enum AccessMode : unsigned char { Unchanged = 0, Private = 1, Protected = 2, Public = 3 };

  MethodDescriptor() = default;
  explicit MethodDescriptor(const char* name);

  bool isValid() const noexcept { return valid_; }
  std::string getName() const { return name_; }
  AccessMode getAccess() const noexcept { return access_; }
  void setAccess(AccessMode mode) noexcept { access_ = mode; }

 private:
  bool valid_ = false;
  std::string name_;
  AccessMode access_ = Unchanged;
};

}  // namespace sgutils
