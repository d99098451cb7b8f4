// Not installed; internal to the built-in classes of the class-object system.
//
// The data block of "vantel.mixin.util.PropertyGroup" objects: a title and a
// property list, either a cell of property names or a struct whose fields
// are the names and whose values are shown instead of the object's.
#pragma once

#include "vcos/COSInterface.h"
#include "vx/matrix.h"

namespace vcos::builtin {

struct PropertyGroupBlock {
  explicit PropertyGroupBlock(COSInterface*) {}
  void teardown(COSInterface*) {}

  vxArray* titleArray() const;
  void setTitle(vxArray* title);
  vxArray* propertyListArray() const;
  void setPropertyList(vxArray* list);
  vxArray* numPropertiesArray() const;
  std::size_t numProperties() const;

  matrix::unique_vxArray title;         // char row, or null for none
  matrix::unique_vxArray propertyList;  // cell of char rows, or a 1-by-1 struct
};

}  // namespace vcos::builtin
