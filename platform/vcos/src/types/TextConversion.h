// The conversion from "asciiString" (a std::string word) to a type that has
// a conversion from "any": the text becomes an array, then the value. The
// text is tried as a char row first, so that names ("on", "red") and texts
// reach the type as written; when the type refuses that, and the text reads
// as numbers ("2.5", "[1 0 0]", "true"), as a double row. Made on demand by
// the repository for each target type.
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
