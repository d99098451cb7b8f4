// Struct arrays. Field values are owned by the struct: vxSetField and
// vxSetFieldByNumber take ownership of the value they are given (and destroy
// the value they replace); vxGetField returns a borrowed pointer, or null for
// a field that is not set. A value that another cell or struct holds must not
// be stored again: store a shared copy of it. When a setter raises, the value
// stays with the caller. Every function here except vxAddFieldToStruct raises
// for an array that is not a struct.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

VX_API int vxGetNumberOfFields(const vxArray* array);
VX_API const char* vxGetFieldNameByNumber(const vxArray* array, int fieldNumber);
// The field's number, or -1 when the struct has no such field.
VX_API int vxGetFieldNumber(const vxArray* array, const char* fieldName);

// Null as well for a name that is not a field.
VX_API vxArray* vxGetField(const vxArray* array, vxIndex index, const char* fieldName);
VX_API vxArray* vxGetFieldByNumber(const vxArray* array, vxIndex index, int fieldNumber);
// Adds the field when it is missing.
VX_API void vxSetField(vxArray* array, vxIndex index, const char* fieldName, vxArray* value);
VX_API void vxSetFieldByNumber(vxArray* array, vxIndex index, int fieldNumber, vxArray* value);

// Adds a field and returns its number; an existing field returns its number.
// Returns -1 for a name that is not a valid field name.
VX_API int vxAddField(vxArray* array, const char* fieldName);
// The same for a struct that may be shared (every write unshares first);
// returns -1 rather than raising for an array that is not a struct.
VX_API int vxAddFieldToStruct(vxArray* array, const char* fieldName);
VX_API void vxRemoveField(vxArray* array, int fieldNumber);
