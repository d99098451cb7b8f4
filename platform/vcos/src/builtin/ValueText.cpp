// Short texts of values for the default display of objects.
#include "vcos/src/builtin/ValueText.h"

#include <cstdio>
#include <memory>

#include "foundation/io/Printing.h"

#include "vx/vxData.h"
#include "vx/vxFunctionHandleData.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

namespace vcos::builtin {

namespace {

constexpr vxSize kMaxListed = 10;  // longer vectors show as their size

std::string number(const vxArray* a, vxSize i) {
  char buf[32];
  if (vxIsLogical(a)) return vxGetLogicals(a)[i] ? "1" : "0";
  if (vxIsDouble(a) && !vxIsComplex(a)) {
    std::snprintf(buf, sizeof buf, "%.*g", ioGetNumberDigits(), vxGetPr(a)[i]);
    return buf;
  }
  return {};
}

std::string sized(const vxArray* a, char open, char close) {
  std::string s(1, open);
  s.append(dimensionsText(a)).append(" ").append(vxGetClassName(a)).push_back(close);
  return s;
}

std::string quoted(const vxArray* a, char quote) {
  std::string s(1, quote);
  s.append(vxArrayToStdString(a)).push_back(quote);
  return s;
}

}  // namespace

std::string dimensionsText(const vxArray* a) {
  std::string s;
  const vxSize n = vxGetNumberOfDimensions(a);
  for (vxSize i = 0; i < n; ++i) {
    if (i) s += 'x';
    s += std::to_string(vxGetDimensions(a)[i]);
  }
  return s;
}

std::string valueText(const vxArray* a) {
  if (!a) return "[]";
  if (vxIsChar(a)) return vxGetM(a) <= 1 && vxGetNumberOfDimensions(a) == 2 ? quoted(a, '\'') : sized(a, '[', ']');
  if (vxIsString(a) && vxIsScalar(a)) return vxGetStringElement(a, 0) ? quoted(a, '"') : "<missing>";
  if (vxIsFunctionHandle(a) && vxIsScalar(a)) return vxGetFunctionHandle(a)->text();
  if (vxIsCell(a)) return sized(a, '{', '}');
  if ((vxIsDouble(a) && !vxIsComplex(a)) || vxIsLogical(a)) {
    if (vxIsEmpty(a)) return vxIsDouble(a) && vxGetM(a) == 0 && vxGetN(a) == 0 ? "[]" : sized(a, '[', ']');
    if (vxIsScalar(a)) return number(a, 0);
    if (vxGetM(a) == 1 && vxGetNumberOfDimensions(a) == 2 && vxGetN(a) <= kMaxListed) {
      std::string s = "[";
      for (vxSize i = 0; i < vxGetN(a); ++i) {
        if (i) s.push_back(' ');
        s.append(number(a, i));
      }
      s.push_back(']');
      return s;
    }
  }
  if (vxIsNumeric(a) && vxIsScalar(a) && !vxIsComplex(a)) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.*g", ioGetNumberDigits(), vxGetScalar(a));
    return buf;
  }
  return sized(a, '[', ']');
}

}  // namespace vcos::builtin
