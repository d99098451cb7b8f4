// Not installed; internal to sgshell.
// Element-level helpers over the array API that the evaluator, the
// operators and the built-ins share: shapes, creation of an array like
// another, element copies, class conversion, gathering and growing.
#pragma once

#include <complex>
#include <span>
#include <string>
#include <vector>

#include <vx/vx.h>

#include "sgsh/Value.h"

namespace sgsh::ops {

using Dims = std::vector<vxSize>;

Dims dimsOf(const vxArray* a);
vxSize countOf(const Dims& d) noexcept;

// The largest element count the language lets an array have: the runtime's
// own limit, or less where a host caps memory (the fuzz target does).
vxSize elementLimit() noexcept;
void setElementLimit(vxSize limit) noexcept;

// Every number the language uses as a subscript, a size or a count passes
// through one of these, so a NaN, an infinity or a huge value becomes an
// error with an identifier and never a wrapped or undefined cast.
// A one-based subscript to a zero-based position: finite, whole, at least 1
// (VANTEL:sgsh:BadIndex) and within the element limit (VANTEL:sgsh:IndexTooLarge).
vxIndex positionFrom(double subscript);
// A dimension length or a count: whole and not NaN (VANTEL:sgsh:BadSize,
// naming fn), within the element limit (VANTEL:sgsh:TooLarge); negative
// lengths read as 0.
vxSize sizeFrom(double v, const char* fn);
// The element count of dims, raising VANTEL:sgsh:TooLarge past the limit
// (also where the product itself would overflow).
vxSize checkedCount(const Dims& d, const char* fn);
// Drops trailing singleton dimensions beyond the second.
Dims normalized(Dims d);
// "2x3", "0x0", "2x3x4".
std::string sizeText(const Dims& d);
std::string sizeText(const vxArray* a);
const char* classNameOf(const vxArray* a);

// Numeric, logical and char: the classes arithmetic reads as numbers.
bool isNumberLike(const vxArray* a) noexcept;
bool isText(const vxArray* a) noexcept;  // a char row (or empty char) or a string scalar
double realAt(const vxArray* a, vxIndex i);
std::complex<double> complexAt(const vxArray* a, vxIndex i);

// A zero-filled (numbers) or empty (cells, structs) array.
Value makeArray(vxClassID cls, const Dims& dims, bool complex = false);
// Same class as the prototype (same complexity, same struct fields).
Value makeLike(const vxArray* proto, const Dims& dims);
Value doubles(const Dims& dims, const std::vector<double>& values);
Value complexes(const Dims& dims, const std::vector<std::complex<double>>& values);
Value logicals(const Dims& dims, const std::vector<bool>& values);
Value cellRow(std::vector<Value> values);
// The UTF-8 text of a char row or string scalar; raises VANTEL:sgsh:NotText.
std::string textOf(const vxArray* a, const char* what = "argument");
std::string textOfElement(const vxArray* a, vxIndex i);  // a string array element
// The text of a field or property name. Names are looked up as C strings
// further down, so one with a NUL character is refused
// (VANTEL:sgsh:NulInName) rather than cut at the NUL.
std::string nameOf(const vxArray* a, const char* what = "name");
std::string checkedName(std::string name);
// A number as text where text is built from numbers ("n=" + 5): integers
// whole, others with five significant digits.
std::string numberAsText(double v);

// Copies element si of src into element di of dst; both of one class (and,
// for numbers, one complexity).
void copyElement(vxArray* dst, vxIndex di, const vxArray* src, vxIndex si);
// The value of numbers, logicals or chars in another of those classes.
Value convertTo(const vxArray* a, vxClassID cls, bool complex);
// A complex result whose imaginary parts are all zero becomes real.
Value narrowComplex(Value v);

// The elements at the given zero-based linear positions, shaped as dims.
Value gather(const vxArray* a, std::span<const vxIndex> positions, const Dims& dims);
// A shared copy with other dimensions of the same element count.
Value reshaped(const vxArray* a, const Dims& dims);
// A copy grown to new dimensions, each old element at its old subscripts.
Value resized(const vxArray* a, const Dims& dims);
// Zero-based linear position of subscripts in dims.
vxIndex linearOf(const Dims& dims, std::span<const vxIndex> subs) noexcept;

// Field names of a struct, in order.
std::vector<std::string> fieldNames(const vxArray* s);

}  // namespace sgsh::ops
