// Shared reading and checking of N-by-3 colour tables.
#include "ColorRows.h"

#include <cstring>
#include <string>

#include "ArrayValues.h"
#include "foundation/core/except/Error.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace graphics::datatype::detail {

std::vector<double> readColorRows(const vxArray* value, const char* errorId, std::string_view typeName) {
  if (!isRealNumeric(value) || vxGetNumberOfDimensions(value) != 2 || vxGetN(value) != 3 || vxGetM(value) == 0)
    throw Error(errorId, std::string(typeName), describe(value));
  const vxSize n = vxGetNumberOfElements(value);
  std::vector<double> rows(n);
  for (vxSize i = 0; i < n; ++i) {
    rows[i] = numberAt(value, i);
    if (!(rows[i] >= 0.0 && rows[i] <= 1.0)) throw Error(errorId, std::string(typeName), describe(value));
  }
  return rows;
}

void checkColorRows(const std::vector<double>& rows, const char* errorId, std::string_view typeName) {
  bool ok = !rows.empty() && rows.size() % 3 == 0;
  for (double x : rows) ok = ok && x >= 0.0 && x <= 1.0;
  if (!ok) throw Error(errorId, std::string(typeName), std::to_string(rows.size()) + " values");
}

vxArray* colorRowsToArray(const std::vector<double>& rows) {
  vxArray* a = vxCreateDoubleMatrix(rows.size() / 3, 3, vxREAL);
  if (!rows.empty()) std::memcpy(vxGetPr(a), rows.data(), rows.size() * sizeof(double));
  return a;
}

}  // namespace graphics::datatype::detail
