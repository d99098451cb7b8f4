// The holder of a property's factory value: asked once, then cached. The
// cached flag is set before the value is computed, so a computation that
// throws leaves a null value behind and is not tried again.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSValue.h"

namespace sgutils {

class SGUTILS_API DefaultProvider {
 public:
  DefaultProvider() noexcept = default;
  explicit DefaultProvider(COSValue value) noexcept : value_(value) {}
  DefaultProvider(const DefaultProvider&) = default;
  DefaultProvider& operator=(const DefaultProvider&) = default;
  virtual ~DefaultProvider();

  COSValue getDefaultValue() {
    if (!cached_) {
      cached_ = true;
      value_ = getDefault();
    }
    return value_;
  }

 private:
  // The value to cache; the base answers the value it was made with.
  virtual COSValue getDefault();

  COSValue value_;
  bool cached_ = false;
};

}  // namespace sgutils
