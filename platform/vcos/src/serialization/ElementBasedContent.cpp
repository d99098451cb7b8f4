#include "vcos/ElementBasedContent.h"

#include <cstring>

#include "vx/vxQuery.h"
#include "vx/vxStruct.h"

namespace object_serialization {

ElementBasedContent::ElementBasedContent(const vxArray* elements) noexcept {
  if (!elements || !vxIsStruct(elements) || vxGetNumberOfElements(elements) != 1) return;
  elements_ = elements;
  size_ = static_cast<std::size_t>(vxGetNumberOfFields(elements));
}

bool ElementBasedContent::hasProperty(const char* name) const noexcept {
  return elements_ && name && vxGetFieldNumber(elements_, name) >= 0;
}

const vxArray* ElementBasedContent::getValue(const char* name) const noexcept {
  if (!elements_ || !name) return nullptr;
  const int field = vxGetFieldNumber(elements_, name);
  return field < 0 ? nullptr : vxGetFieldByNumber(elements_, 0, field);
}

const char* ElementBasedContent::nameAt(std::size_t i) const noexcept {
  return i < size_ ? vxGetFieldNameByNumber(elements_, static_cast<int>(i)) : nullptr;
}

const vxArray* ElementBasedContent::valueAt(std::size_t i) const noexcept {
  return i < size_ ? vxGetFieldByNumber(elements_, 0, static_cast<int>(i)) : nullptr;
}

}  // namespace object_serialization
