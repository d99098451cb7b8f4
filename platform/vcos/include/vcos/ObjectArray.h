// Object arrays: arrays of the array API whose elements are class-system
// objects, with a class id (the interned name of their class). Elements are
// held by counted references, so an array keeps its objects' memory; an
// element whose object was deleted stays in the array as a deleted shell.
//
// Ownership follows the array API: a vxArray* returned here belongs to the
// caller; an array passed in is borrowed. Indexes are zero-based and in
// storage order (column-major).
#pragma once

#include <cstddef>

#include "foundation/PlatformExport.h"
#include "vcos/COSInterfacePtr.h"
#include "vcos/COSInternedBase.h"
#include "vx/vxTypes.h"

class COSClass;

namespace vcos::array {

// What reading an element gives for an object that was deleted.
enum class DeletedHandleBehavior : unsigned char {
  ReturnDeleted,  // the deleted shell itself
  ReturnNull,     // a null pointer
  Raise,          // "VANTEL:vcos:InvalidHandle"
};

// Raises "VANTEL:vcos:NotAnObjectArray" for another array and
// "VANTEL:vcos:IndexOutOfRange" for an index past the end.
VCOS_API COSInterfacePtr getElement(const vxArray* array, std::size_t index, DeletedHandleBehavior behavior);
// A 1-by-1 array of the object's class; raises for a null object.
VCOS_API vxArray* create(const COSInterfacePtr& object);
// An m-by-n array of null elements; raises "VANTEL:vcos:UnknownClass" when
// no class of that name exists.
VCOS_API vxArray* create(std::size_t m, std::size_t n, COSID classId);
// The class of the array, or null when it is not an object array.
VCOS_API COSClass* classOf(const vxArray* array);

}  // namespace vcos::array

VCOS_API COSInterfacePtr omGetArrayElement(const vxArray* array, std::size_t index);
// The same, but null for an element whose object was deleted.
VCOS_API COSInterfacePtr omGetLiveArrayElement(const vxArray* array, std::size_t index);
// Stores an element (a strong reference); the array is unshared first, so a
// copy of it does not change.
VCOS_API void omSetArrayElement(vxArray* array, std::size_t index, const COSInterfacePtr& object);

VCOS_API vxArray* omCreateVCOSScalar(const COSInterfacePtr& object);
VCOS_API vxArray* omCreateVCOSMatrix(std::size_t m, std::size_t n, COSID classId);
VCOS_API vxArray* omCreateVCOSMatrix(std::size_t m, std::size_t n, const char* className);
VCOS_API vxArray* omCreateVCOSEmpty(COSID classId);
VCOS_API vxArray* omCreateVCOSEmpty(const char* className);

// True for an array that holds class-system objects.
VCOS_API bool omIsVCOS(const vxArray* array) noexcept;
// The class id of an object array; the empty id for any other array.
VCOS_API COSID omGetCOSClassID(const vxArray* array) noexcept;

// Gives the array the nearest class that all its elements share. Below a
// heterogeneous root (a class deriving from "vantel.mixin.Heterogeneous") that
// is the nearest common ancestor, never above the root; a null element is
// first filled with the root's default scalar element (its static method
// getDefaultScalarElement). An array of one class takes that class; an array
// of unrelated, non-heterogeneous classes keeps the class it has.
VCOS_API void omSetClassOfHeterogeneousArray(vxArray* array);
