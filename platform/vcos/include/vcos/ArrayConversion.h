// The two forms of arrays that hold objects, at any depth (object arrays, and
// cells and structs that contain them):
//   internal: every object reference is strong. This is the ordinary form,
//     the one that variables and stored values (application data, defaults,
//     property values) hold: a stored array owns its objects.
//   external: every object reference is weak. A view for holders that must
//     not keep objects alive (a cache, a file writer, a stored array about to
//     be destroyed during teardown); a deleted object reads as a shell.
// Converting never changes which objects an array names, only how it holds
// them. Elements whose objects are already deleted stay weak in both forms.
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

// A new array (shared where nothing changes) in the external form.
VCOS_API vxArray* vcosConvertArrayToExternal(const vxArray* array);
// Converts the array itself to the external form. The second argument is
// kept for the shape of the call and has no effect.
VCOS_API void vcosConvertArrayToExternalInPlace(vxArray* array, bool reserved);
// The internal form: with `copy` a new array owned by the caller, otherwise
// the array itself, converted in place, is returned.
VCOS_API vxArray* vcosConvertArrayToInternal(vxArray* array, bool copy);
