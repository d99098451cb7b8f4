// The values a theme gives its attributes, converted to the data types of
// the properties that take them: what a theme walk or a new object would
// otherwise convert again for every object. Owned here, each destroyed
// through its type; a theme empties it whenever what it resolves changes.
#pragma once

#include <string>
#include <vector>

#include "sgutils/SgutilsExport.h"
#include "vcos/COSDataType.h"
#include "vcos/COSValue.h"

namespace sgutils::themes {

class SGUTILS_API TypedThemeValues {
 public:
  TypedThemeValues() = default;
  TypedThemeValues(const TypedThemeValues&) = delete;
  TypedThemeValues& operator=(const TypedThemeValues&) = delete;
  ~TypedThemeValues() { clear(); }

  // The value kept for `attribute` (compared by address: the callers pass
  // names that live as long as the process) in `type`; null when none.
  const COSValue* find(const std::string* attribute, COSID type) const noexcept {
    for (const Entry& e : entries_)
      if (e.attribute == attribute && e.type.getID() == type) return &e.value;
    return nullptr;
  }
  // Takes `value` over; returns where it is kept.
  const COSValue* add(const std::string* attribute, COSDataTypePtr type, COSValue value) {
    entries_.push_back({attribute, std::move(type), value});
    return &entries_.back().value;
  }
  void clear() noexcept {
    for (Entry& e : entries_)
      if (e.type && !e.value.isEmpty()) e.type->destroy(e.value);
    entries_.clear();
  }

 private:
  struct Entry {
    const std::string* attribute;
    COSDataTypePtr type;
    COSValue value;
  };
  std::vector<Entry> entries_;
};

}  // namespace sgutils::themes
