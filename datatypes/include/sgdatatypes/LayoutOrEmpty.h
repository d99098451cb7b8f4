// The layout options of an object in a layout container, or nothing. Users
// give a 1-by-1 array of a "vantel.ui.layout.LayoutOptions" object or any
// empty array; they read back that array, or a 0-by-0 double.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API LayoutOrEmpty {
 public:
  LayoutOrEmpty() = default;
  // Raises "VANTEL:datatypes:InvalidLayout" for an object of another class.
  explicit LayoutOrEmpty(COSInterfacePtr options);

  // Raises "VANTEL:datatypes:InvalidLayout".
  static LayoutOrEmpty fromArray(const vxArray* value);
  vxArray* toArray() const;

  bool isEmpty() const noexcept { return !options_; }
  const COSInterfacePtr& get() const noexcept { return options_; }

  friend bool operator==(const LayoutOrEmpty& a, const LayoutOrEmpty& b) noexcept {
    return a.options_ == b.options_;
  }

 private:
  COSInterfacePtr options_;
};

}  // namespace graphics::datatype
