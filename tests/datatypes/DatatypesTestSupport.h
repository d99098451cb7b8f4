// Helpers of the data types tests: owned arrays built from literals, the
// identifier of a raised error, and a few classes registered with the real
// class-object system (a figure, a layout options class, a widget with a
// callback property and an event).
#pragma once

#include <functional>
#include <initializer_list>
#include <string>

#include "foundation/core/except/IMsgIDException.h"
#include "sgdatatypes/sgdatatypes.h"
#include "vcos/vcos.h"
#include "vx/vx.h"

namespace dtt {

using matrix::unique_vxArray;

inline unique_vxArray own(vxArray* a) { return unique_vxArray(a); }
// An m-by-n double matrix from values given column by column.
unique_vxArray matrixOf(vxSize m, vxSize n, std::initializer_list<double> columnMajor);
inline unique_vxArray row(std::initializer_list<double> v) { return matrixOf(1, v.size(), v); }
inline unique_vxArray text(const char* s) { return own(vxCreateString(s)); }
inline unique_vxArray scalar(double d) { return own(vxCreateDoubleScalar(d)); }
inline unique_vxArray emptyDouble() { return own(vxCreateDoubleMatrix(0, 0, vxREAL)); }

// The identifier of what `fn` raises; "" when it raises nothing.
std::string raisedId(const std::function<void()>& fn);

// Registers the data types and the test classes (once per process).
void setUp();

// A new instance of a test class: "dtt.Widget", "vantel.ui.Figure",
// "vantel.ui.layout.LayoutOptions".
COSInterfacePtr make(const char* className);
// The 1-by-1 object array of an object.
unique_vxArray objectArray(const COSInterfacePtr& object);

// Converts through the type repository, from "any" to `type` and back.
COSValue fromAny(const char* type, const vxArray* value);
unique_vxArray toAny(const char* type, COSValue value);
void destroyValue(const char* type, COSValue value);

}  // namespace dtt
