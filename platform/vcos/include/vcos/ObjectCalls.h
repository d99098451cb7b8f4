// Calls into classes from outside the class system, with arrays: running a
// constructor, calling a method by name, the default load step, and wrapping
// a C++ data block as an instance.
#pragma once

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vx/vxTypes.h"

class COSClass;
class COSClient;
class COSDataTypePtr;

// Runs the class's constructor with the inputs (borrowed) and returns the new
// object as a 1-by-1 array owned by the caller. Raises
// "VANTEL:vcos:UnknownClass" for an unknown class; errors of the
// constructor pass through.
VCOS_API vxArray* omConstructObjectWithClient(COSID classId, int nrhs, const vxArray* const prhs[],
                                              const COSClient* client);
VCOS_API vxArray* omConstructObjectWithClient(const char* className, int nrhs, const vxArray* const prhs[],
                                              const COSClient* client);

// Calls the method `methodId` by name: the most derived definition whose
// signature accepts the inputs. With `dispatchOnObject` true and an object
// array as the first input, the search starts at that array's class rather
// than at `classId`, so a subclass's override runs. `plhs` has room for
// max(nlhs, 1) outputs, which belong to the caller. Returns false when no
// class on the way has a method of that name (nothing is called); the
// errors of the call pass through.
VCOS_API bool omCallMethod(COSID classId, COSID methodId, const COSClient* client, int nlhs, vxArray* plhs[],
                           int nrhs, const vxArray* const prhs[], bool dispatchOnObject);
VCOS_API bool omCallMethod(const char* className, const char* methodName, const COSClient* client, int nlhs,
                           vxArray* plhs[], int nrhs, const vxArray* const prhs[], bool dispatchOnObject);
VCOS_API bool omCallMethod(COSID classId, const char* methodName, const COSClient* client, int nlhs, vxArray* plhs[],
                           int nrhs, const vxArray* const prhs[], bool dispatchOnObject);

// The default load step: calls the "loadobj" of the object's class. An object
// array `value` is passed alone (the object was restored already); any other
// saved form is passed with the object as the second input. The result of
// loadobj is dropped. Returns false when the class has no "loadobj".
VCOS_API bool omCallLoadobjMethod(const COSInterfacePtr& object, const vxArray* value, const COSDataTypePtr& type);

// A new instance of `cls` whose data block for that class is `data` (taken
// over: the class info's deallocateInstance frees it with the instance). No
// constructor runs.
VCOS_API COSInterfacePtr omWrapData(void* data, COSClass* cls);
VCOS_API COSInterfacePtr omWrapData(void* data, const char* className);

// Whether the class system keeps its state in the per-instance store. This
// runtime keeps classes, packages and types once per process, shared by all
// interpreter instances, so the answer is false and callers use statics.
VCOS_API bool omGetVcosUsingUSM() noexcept;
