// Not installed; internal to the array runtime.
//
// Payload of struct arrays: ordered fields, each with one owned value per
// element (null for a field that is not set). Fields are stored one column per
// field, so adding or removing a field leaves the other columns alone, and a
// field's name keeps its address for as long as the field exists.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Payload.h"
#include "vxArrayHeader.h"

namespace vx::impl {

class StructPayload final : public Payload {
 public:
  struct Field {
    std::string name;
    std::vector<ElementRef> values;
  };

  explicit StructPayload(vxSize numel) : numel_(numel) {}

  PayloadRef clone(Depth depth) const override;
  void resize(vxSize numel) override;
  bool holdsObjects() const override;

  // The field's number, or -1.
  int find(const char* name) const noexcept;
  int add(const char* name);
  void remove(int number);

  int fieldCount() const noexcept { return static_cast<int>(fields_.size()); }
  Field& field(int number) noexcept { return *fields_[number]; }
  const Field& field(int number) const noexcept { return *fields_[number]; }

 private:
  vxSize numel_;
  std::vector<std::unique_ptr<Field>> fields_;
};

// A name made of a letter followed by letters, digits and underscores.
bool isValidFieldName(const char* name) noexcept;

}  // namespace vx::impl
