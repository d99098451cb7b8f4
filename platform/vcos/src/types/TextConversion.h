// The conversion from "asciiString" (a std::string word) to a type that has
// a conversion from "any": the text becomes an array, then the value, read
// in the type's own text form. A text that reads as numbers ("5", "2.5",
// "[1 0 0]", "true") goes as a double row first, unless the type is a text
// type or has a closed list of names; names ("on", "red") and texts go as a
// char row. When the type refuses the first form, the other is tried. Made
// on demand by the repository for each target type.
#pragma once

#include "vcos/COSInternedBase.h"
#include "vcos/COSTypeConversion.h"

namespace vcos::internal {

class TextConversion final : public COSTypeConversion {
 public:
  explicit TextConversion(COSID target) noexcept : target_(target) {}
  COSValue convert(COSValue from) const override;

 private:
  // Looked up on each conversion: the conversion from "any" may be replaced.
  COSID target_;
};

}  // namespace vcos::internal
