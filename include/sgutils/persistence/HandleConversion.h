// Numbers and arrays to graphics objects, as the methods of graphics
// objects take them.
//
//   toScalarObject(value)    one object, or null for no value and empty
//                            values (an empty char raises). Several elements
//                            or a number that names nothing raise
//                            "VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle",
//                            a deleted object "VANTEL:sg:DeletedObject" (by
//                            number "VANTEL:sg:DeletedObjectDoubleHandle"),
//                            anything else "VANTEL:sg:InvalidObjectHandle".
//   toObjectArray(numbers, strict)  an array of the same shape; a number
//                            that names nothing raises
//                            "VANTEL:graphics:CannotConvertDoubleToHandle"
//                            when strict, and becomes a placeholder when not.
#pragma once

#include "sgutils/SgutilsExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vx/matrix.h"

namespace sgutils::handles {

SGUTILS_API COSInterfacePtr toScalarObject(const vxArray* value);
SGUTILS_API matrix::unique_vxArray toObjectArray(const vxArray* numbers, bool strict);

}  // namespace sgutils::handles
