// Not installed; internal to sgdatatypes.
//
// The N-by-3 tables of colour components that ColorOrder and ColorMap hold,
// stored column by column as arrays store them (all reds, then all greens,
// then all blues).
#pragma once

#include <string_view>
#include <vector>

#include "vx/vxTypes.h"

namespace graphics::datatype::detail {

// Reads an N-by-3 real array with N >= 1 and every value in [0, 1]; raises
// `errorId` with the type name and a description of the value otherwise.
std::vector<double> readColorRows(const vxArray* value, const char* errorId, std::string_view typeName);
// Checks a column-major table the same way, for values built in C++.
void checkColorRows(const std::vector<double>& rows, const char* errorId, std::string_view typeName);
// A new N-by-3 double array of the table.
vxArray* colorRowsToArray(const std::vector<double>& rows);

}  // namespace graphics::datatype::detail
