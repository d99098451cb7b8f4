// Not installed. The attributes of a property added at run time that differ
// from those of a newly added one, in a file: a 1-by-1 struct with one field
// per attribute (element "Attributes" of the added-properties list). Flag
// attributes and the graphics attributes are logical scalars; GetAccess and
// SetAccess an int32 scalar (0 public to 3 none) or, for an access list, a
// cell row of class names. Visibility and transience have their own places
// (the list's "Visible"; a transient property is not saved) and are not
// among them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "vcos/COSInternedBase.h"
#include "vcos/MemberAccess.h"
#include "vx/matrix.h"

class COSPropInfo;

namespace sgutils::persistence {

class SavedPropertyAttributes {
 public:
  // The attributes of `property` that differ from a newly added property's,
  // or null when none do or the property was not made by
  // COSGenericProp::createNewDynamicProp (its attributes are not kept).
  static matrix::unique_vxArray write(const COSPropInfo* property);

  // Reads the saved struct of the property `name` (null: none), whole,
  // before anything is made. Raises "VANTEL:sg:load:BadDynamicProperties"
  // when it is not a 1-by-1 struct, "UnknownPropertyAttribute" for a name
  // that is no attribute, "BadPropertyAttribute" for a value that does not
  // fit its attribute.
  static SavedPropertyAttributes read(const vxArray* saved, std::string_view name, const char* className);

  bool empty() const noexcept;

  // Gives `property` the saved attributes; called once its value is set, so
  // a property saved read-only still takes its value. On a property not made
  // by createNewDynamicProp (one the loaded object had already) nothing is
  // changed, and the graphics attributes are passed over when the property
  // has no graphics metadata; either is logged.
  void applyTo(COSPropInfo* property, std::string_view name) const;

 private:
  unsigned setFlags_ = 0;
  unsigned clearFlags_ = 0;
  std::optional<MemberAccess> access_[2];  // get, set
  std::optional<std::vector<COSID>> accessList_[2];
  std::uint32_t metaGiven_ = 0;  // one bit per graphics attribute
  std::uint32_t metaValues_ = 0;
};

}  // namespace sgutils::persistence
