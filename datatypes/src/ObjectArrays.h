// Not installed; internal to sgdatatypes.
//
// Object arrays at the boundary of the handle-holding value types.
#pragma once

#include "vcos/COSInterfacePtr.h"
#include "vx/vxTypes.h"

namespace graphics::datatype::detail {

// A 1-by-1 object array of the object's class holding it (owned by the caller).
vxArray* objectScalar(COSInterface* object);
// What a user gave for one object: a 1-by-1 object array, or a number of the
// handle table. Sets `out` and returns true when the value is one of them;
// an empty value gives true and a null `out`. `errorId` is raised for more
// than one element and for a number that names no object.
bool readSingleObject(const vxArray* value, COSInterfacePtr& out, const char* errorId);

}  // namespace graphics::datatype::detail
