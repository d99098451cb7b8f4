// Struct arrays. Field values are owned by the struct: vxSetField and
// vxSetFieldByNumber take ownership of the value they are given (and destroy
// the value they replace); vxGetField returns a borrowed pointer, or null for
// a field that is not set.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

VX_API int vxGetNumberOfFields(const vxArray* array);
VX_API const char* vxGetFieldNameByNumber(const vxArray* array, int fieldNumber);
// The field's number, or -1 when the struct has no such field.
VX_API int vxGetFieldNumber(const vxArray* array, const char* fieldName);

VX_API vxArray* vxGetField(const vxArray* array, vxIndex index, const char* fieldName);
VX_API vxArray* vxGetFieldByNumber(const vxArray* array, vxIndex index, int fieldNumber);
// Adds the field when it is missing.
VX_API void vxSetField(vxArray* array, vxIndex index, const char* fieldName, vxArray* value);
VX_API void vxSetFieldByNumber(vxArray* array, vxIndex index, int fieldNumber, vxArray* value);

// Adds a field and returns its number; an existing field returns its number.
// Returns -1 for a name that is not a valid field name.
VX_API int vxAddField(vxArray* array, const char* fieldName);
// The same for a struct that may be shared: unshares first. Returns -1 on failure.
VX_API int vxAddFieldToStruct(vxArray* array, const char* fieldName);
VX_API void vxRemoveField(vxArray* array, int fieldNumber);
