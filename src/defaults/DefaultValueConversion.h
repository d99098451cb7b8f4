// Conversions between arrays and typed property values for the default
// store: validating a default against its property's type, and setting a
// stored array on an object.
#pragma once

#include "vcos/COSDataTypePtr.h"
#include "vcos/COSValue.h"
#include "vx/matrix.h"

class COSClient;
class COSInterface;
class COSPropInfo;

namespace sgutils::detail {

// The value converted to the type and back to an array (a new array, null
// for a null value of an array type). Raises what the type raises for a
// value it refuses.
matrix::unique_vxArray validatedCopy(const COSDataTypePtr& type, const vxArray* value);
// A typed value (borrowed) as a new array.
matrix::unique_vxArray typedToArray(const COSDataTypePtr& type, COSValue value);
// Converts the array to the property's type and sets it through the client
// path; the typed value is freed afterwards.
void setFromArray(const COSClient* client, COSInterface* object, const COSPropInfo* property, const vxArray* value);

}  // namespace sgutils::detail
