// The type of a graphics object as users see it ("line", "axes"): a short
// text, possibly empty for a class without a short name.
#pragma once

#include <string>

#include "sgdatatypes/DatatypesExport.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API TypeName {
 public:
  TypeName() = default;
  explicit TypeName(std::string name) : name_(std::move(name)) {}

  // Raises "VANTEL:datatypes:InvalidTypeName" for anything but text.
  static TypeName fromArray(const vxArray* value);
  vxArray* toArray() const;

  const std::string& str() const noexcept { return name_; }
  const char* c_str() const noexcept { return name_.c_str(); }

  friend bool operator==(const TypeName& a, const TypeName& b) noexcept { return a.name_ == b.name_; }

 private:
  std::string name_;
};

}  // namespace graphics::datatype
