// Readers and creators shared by the value types' conversions.
#include "ArrayValues.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>

#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace graphics::datatype::detail {

bool isRealNumeric(const vxArray* a) noexcept { return a && vxIsNumeric(a) && !vxIsComplex(a); }

double numberAt(const vxArray* a, std::size_t i) noexcept {
  const void* d = vxGetData(a);
  switch (vxGetClassID(a)) {
    case vxDOUBLE_CLASS: return static_cast<const double*>(d)[i];
    case vxSINGLE_CLASS: return static_cast<const float*>(d)[i];
    case vxINT8_CLASS: return static_cast<const std::int8_t*>(d)[i];
    case vxUINT8_CLASS: return static_cast<const std::uint8_t*>(d)[i];
    case vxINT16_CLASS: return static_cast<const std::int16_t*>(d)[i];
    case vxUINT16_CLASS: return static_cast<const std::uint16_t*>(d)[i];
    case vxINT32_CLASS: return static_cast<const std::int32_t*>(d)[i];
    case vxUINT32_CLASS: return static_cast<const std::uint32_t*>(d)[i];
    case vxINT64_CLASS: return static_cast<double>(static_cast<const std::int64_t*>(d)[i]);
    case vxUINT64_CLASS: return static_cast<double>(static_cast<const std::uint64_t*>(d)[i]);
    default: return 0.0;
  }
}

bool isText(const vxArray* a) noexcept {
  if (!a) return false;
  if (vxIsChar(a)) return vxIsEmpty(a) || vxGetM(a) == 1;
  if (vxIsString(a)) return vxIsScalar(a) && vxGetStringElement(a, 0).has_value();
  return false;
}

std::string textOf(const vxArray* a) {
  if (vxIsChar(a) && vxIsEmpty(a)) return {};
  return vxArrayToStdString(a);
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) noexcept {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::string normalizedWord(std::string_view text) {
  auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

vxArray* doubleRow(const double* values, std::size_t n) {
  vxArray* a = vxCreateDoubleMatrix(1, n, vxREAL);
  if (n) std::memcpy(vxGetPr(a), values, n * sizeof(double));
  return a;
}

vxArray* charRow(std::string_view text) { return vxCreateString(std::string(text).c_str()); }

std::string describe(const vxArray* a) {
  if (!a) return "missing value";
  std::string out;
  const vxSize* dims = vxGetDimensions(a);
  for (vxSize i = 0, n = vxGetNumberOfDimensions(a); i < n; ++i) {
    if (i) out += 'x';
    out += std::to_string(dims[i]);
  }
  out += ' ';
  out += vxGetClassName(a);
  return out;
}

}  // namespace graphics::datatype::detail
