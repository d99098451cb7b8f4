// How values look. A statement without a semicolon shows "name = " and the
// value; disp shows the value alone. Numbers: integers without decimals,
// otherwise four decimals, or exponent form for very large or small
// magnitudes, one format per array so columns align.
#pragma once

#include <string>

#include <vx/vxTypes.h>

namespace sgsh {

// "x = 5\n", or "x =\n" followed by indented lines for larger values.
std::string displayText(const std::string& name, const vxArray* value);
// What disp prints: the value without a name; nothing for an empty value.
std::string dispText(const vxArray* value);
// One short line for a value inside a cell or a struct field.
std::string summaryText(const vxArray* value);
// A number as the display writes it alone ("3", "2.5000", "1.0000e+06").
std::string numberText(double v);

// Digits after the point for numbers that are not integers: four (short,
// the default) or fifteen (long). One setting for the process, as the
// format command of a session sets it.
enum class NumberFormat : unsigned char { Short, Long };
void setNumberFormat(NumberFormat format) noexcept;
NumberFormat numberFormat() noexcept;

}  // namespace sgsh
