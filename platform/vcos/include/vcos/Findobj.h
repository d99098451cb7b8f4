// The search behind findobj of class "handle": the objects of an array and
// their descendants that pass a list of conditions.
//
// Order of the result: pre-order over each starting object in turn, each
// object before its children, children newest first. The children of an
// object are what its class info reports when usesCustomChildrenList is
// true (getChildrenOfInstance), else the object tree's own chain. An object
// reached twice (the starting array holds an object and its ancestor) is
// listed once. Deleted objects are skipped.
//
// Conditions: property-value pairs (the value is read through the public
// client; text against text ignores case; a property of a scalar type is
// compared in that type, the value converted once; anything else with
// vxAreMatricesEqualNanOptional, NaN never equal), "-property P", "-regexp P R"
// (ECMAScript syntax, searched in text values), "-class C" (exactly that
// class), "-isa C" (that class or a subclass), "-function F" (F called with
// the object, true when it answers a true condition), "-function P F" (F
// called with the value of P), "-not", "-and", "-or" ("-not" binds to the
// next term, "-and" tighter than "-or", neighbours are joined by "-and"),
// and "-depth D" (0 searches the starting objects alone, Inf is unlimited).
#pragma once

#include "foundation/PlatformExport.h"
#include "vx/vxTypes.h"

namespace vcos {

// A column of the objects found, owned by the caller, whose class is the
// nearest shared by the objects found (see omSetClassOfHeterogeneousArray);
// 0-by-1 of the starting array's class when nothing is found. Raises
// "VANTEL:vcos:findobj:*" errors for a bad condition list.
VCOS_API vxArray* findobj(const vxArray* handles, int nargs, const vxArray* const args[]);

}  // namespace vcos
