// Not installed; internal to the class-object system.
//
// The basic data types that exist from the start, and the registration of
// them and of their conversions to and from arrays.
#pragma once

#include "vcos/COSDataType.h"

namespace vcos::internal {

// Registers the basic types and conversions into the repository's table.
void registerBasicTypes();
// A type for a class-typed name ("<class>", "<class> scalar", "<class> vector",
// "<class> matrix"), or null when the name is not one or the class does not
// exist.
COSDataType* makeClassType(COSID name);

}  // namespace vcos::internal
