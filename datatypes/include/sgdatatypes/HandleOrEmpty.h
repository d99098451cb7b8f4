// One object, or nothing: the value of properties such as a context menu.
// Users give a 1-by-1 object array, the number of an object, or any empty
// array; they read back the 1-by-1 object array, or a 0-by-0 double.
// The value holds a strong reference to its object; a deleted object stays
// in the value as a shell, so that the user of the value can report it.
#pragma once

#include "sgdatatypes/DatatypesExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace graphics::datatype {

class SGDATATYPES_API HandleOrEmpty {
 public:
  HandleOrEmpty() = default;
  explicit HandleOrEmpty(COSInterfacePtr object) : object_(std::move(object)) {
    object_.setReferenceType(COSStrongReference);
  }

  // Raises "VANTEL:datatypes:InvalidHandleOrEmpty" for more than one object,
  // a number that names no object, or a value that is neither.
  static HandleOrEmpty fromArray(const vxArray* value);
  vxArray* toArray() const;

  bool isEmpty() const noexcept { return !object_; }
  // Holds an object that is neither deleted nor being deleted.
  bool isAlive() const noexcept { return object_ && !object_->isDestroyed() && !object_->isBeingDestroyed(); }
  const COSInterfacePtr& get() const noexcept { return object_; }

  friend bool operator==(const HandleOrEmpty& a, const HandleOrEmpty& b) noexcept { return a.object_ == b.object_; }

 private:
  COSInterfacePtr object_;
};

}  // namespace graphics::datatype
