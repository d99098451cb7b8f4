// The content of an object that the serializer restores element by element:
// the object's saved elements (a name and a value each) in saved order, as
// the file held them. Classes that load this way derive from the mixin
// named by CUSTOM_ELEMENT_SERIALIZATION_MIXIN_NAME (ObjectSerialization.h).
#pragma once

#include <cstddef>

#include "foundation/PlatformExport.h"

struct vxArray;

namespace object_serialization {

class VCOS_API ElementBasedContent {
 public:
  // A view of a 1-by-1 struct with one field per element, which stays the
  // caller's. Any other value (null, an object array) has no elements.
  explicit ElementBasedContent(const vxArray* elements) noexcept;

  // Whether an element of exactly that name was saved.
  bool hasProperty(const char* name) const noexcept;
  // The saved value of that element (borrowed), or null.
  const vxArray* getValue(const char* name) const noexcept;

  std::size_t size() const noexcept { return size_; }
  const char* nameAt(std::size_t i) const noexcept;
  const vxArray* valueAt(std::size_t i) const noexcept;
  // The struct itself, or null when there are no elements.
  const vxArray* elements() const noexcept { return elements_; }

 private:
  const vxArray* elements_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace object_serialization
