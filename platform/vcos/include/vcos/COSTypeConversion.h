// A conversion between two types. convert returns a new value of the target
// type owned by the caller, or raises "VANTEL:vcos:ConversionFailed".
#pragma once

#include <cstddef>

#include "foundation/PlatformExport.h"
#include "vcos/COSValue.h"

class VCOS_API COSTypeConversion {
 public:
  // Room a caller gives convertInPlace, aligned as alignof(std::max_align_t).
  static constexpr std::size_t kInPlaceBytes = 64;
  // Ends a value that convertInPlace built in the caller's room.
  using EndInPlace = void (*)(void* room) noexcept;

  virtual ~COSTypeConversion();
  virtual COSValue convert(COSValue from) const = 0;

  // The converted value built in `room` (kInPlaceBytes) instead of on the
  // heap, for a caller that only lends the value for the length of a call:
  // `out` then points into `room`, and the caller calls `end(room)` when done.
  // Raises as convert does; false (nothing built) when this conversion has
  // no such form, and the caller converts with convert.
  virtual bool convertInPlace(COSValue from, void* room, COSValue& out, EndInPlace& end) const;

  // True for a conversion from an array that turns a 1-by-1 logical into
  // COSValue::fromBool of its element and into nothing else: a caller that
  // holds such an input (vxGetLogicalScalar) may take that word without
  // calling convert. Set by the type's library when it registers the
  // conversion.
  bool takesLogicalScalarAsBool() const noexcept { return logicalScalarAsBool_; }
  void setTakesLogicalScalarAsBool() noexcept { logicalScalarAsBool_ = true; }

 private:
  bool logicalScalarAsBool_ = false;
};
