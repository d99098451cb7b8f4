// The value of a variable or an expression: an owning holder of one vxArray.
// Copying a Value makes a shared copy (the payload is shared until either
// side writes), so assignment never copies elements.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <vx/matrix.h>
#include <vx/vxTypes.h>

namespace sgsh {

class Value {
 public:
  Value() noexcept = default;
  // Takes ownership of an array from a create call.
  explicit Value(vxArray* owned) noexcept : array_(owned) {}
  explicit Value(matrix::unique_vxArray owned) noexcept : array_(std::move(owned)) {}
  Value(const Value& other);
  Value& operator=(const Value& other);
  Value(Value&&) noexcept = default;
  Value& operator=(Value&&) noexcept = default;
  ~Value() = default;

  // A shared copy of a borrowed array.
  static Value copyOf(const vxArray* borrowed);
  static Value scalar(double v);
  static Value logical(bool v);
  // A char row from UTF-8 text.
  static Value text(std::string_view utf8);
  static Value emptyDouble();

  bool has() const noexcept { return array_ != nullptr; }
  explicit operator bool() const noexcept { return has(); }
  const vxArray* get() const noexcept { return array_.get(); }
  // Writable access; the array API unshares on write.
  vxArray* mut() noexcept { return array_.get(); }
  vxArray* release() noexcept { return array_.release(); }

 private:
  matrix::unique_vxArray array_;
};

}  // namespace sgsh
