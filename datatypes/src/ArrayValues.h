// Not installed; internal to sgdatatypes.
//
// Reading the arrays that users hand to the value types: real numbers of any
// numeric class without copying them out, text of char rows and scalar
// strings, and the small creators the conversions back to arrays share.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vx/vxTypes.h"

namespace graphics::datatype::detail {

// Element `i` of a real numeric array as a double. The caller has checked
// isRealNumeric.
double numberAt(const vxArray* a, std::size_t i) noexcept;

// True for a non-complex array of class double, single or an integer class.
bool isRealNumeric(const vxArray* a) noexcept;

// True for a char row (or an empty char array) or a non-missing scalar string.
bool isText(const vxArray* a) noexcept;
// The UTF-8 text of such an array.
std::string textOf(const vxArray* a);

// Case-insensitive comparison of ASCII text.
bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept;
// Lower-case copy of ASCII text, surrounding blanks removed.
std::string normalizedWord(std::string_view text);

// A 1-by-n double row holding `values`.
vxArray* doubleRow(const double* values, std::size_t n);
// A 1-by-n char row of UTF-8 text.
vxArray* charRow(std::string_view text);

// A readable name of what the array is, for error messages: "1x3 double".
std::string describe(const vxArray* a);

}  // namespace graphics::datatype::detail
