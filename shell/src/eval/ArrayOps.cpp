// Element-level helpers over the array API: shapes, creation, element
// copies, conversions between the number-like classes, gathering, growing.
#include "eval/ArrayOps.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <algorithm>
#include <limits>

#include <foundation/core/except/Error.h>

#include "foundation/text/Utf.h"

namespace sgsh::ops {

using foundation::core::except::Error;

Dims dimsOf(const vxArray* a) {
  const vxSize nd = vxGetNumberOfDimensions(a);
  const vxSize* d = vxGetDimensions(a);
  return Dims(d, d + nd);
}

vxSize countOf(const Dims& d) noexcept {
  vxSize n = 1;
  for (vxSize x : d) n *= x;
  return n;
}

namespace {
// The runtime's limit: byte counts of complex doubles (16 bytes each) stay
// within a size_t.
constexpr vxSize kRuntimeLimit = static_cast<vxSize>(-1) / 16;
vxSize gElementLimit = kRuntimeLimit;
}  // namespace

vxSize elementLimit() noexcept { return gElementLimit; }
void setElementLimit(vxSize limit) noexcept { gElementLimit = std::min(limit, kRuntimeLimit); }

vxIndex positionFrom(double v) {
  if (!(v >= 1) || (std::isfinite(v) && v != std::floor(v))) throw Error("VANTEL:sgsh:BadIndex");
  // The comparison is made in doubles: the limit converts exactly enough,
  // and an infinity or 1e300 never reaches the cast.
  if (!(v <= static_cast<double>(gElementLimit))) throw Error("VANTEL:sgsh:IndexTooLarge", numberAsText(v));
  return static_cast<vxIndex>(v) - 1;
}

vxSize sizeFrom(double v, const char* fn) {
  if (std::isnan(v) || (std::isfinite(v) && v != std::floor(v))) throw Error("VANTEL:sgsh:BadSize", fn);
  if (v <= 0) return 0;
  if (!(v <= static_cast<double>(gElementLimit))) throw Error("VANTEL:sgsh:TooLarge", fn);
  return static_cast<vxSize>(v);
}

vxSize checkedCount(const Dims& d, const char* fn) {
  vxSize n = 1;
  for (vxSize x : d) {
    if (x == 0) return 0;
  }
  for (vxSize x : d) {
    if (n > gElementLimit / x) throw Error("VANTEL:sgsh:TooLarge", fn);
    n *= x;
  }
  return n;
}

std::string checkedName(std::string name) {
  if (name.find('\0') != std::string::npos) throw Error("VANTEL:sgsh:NulInName");
  return name;
}

std::string nameOf(const vxArray* a, const char* what) { return checkedName(textOf(a, what)); }

Dims normalized(Dims d) {
  while (d.size() > 2 && d.back() == 1) d.pop_back();
  while (d.size() < 2) d.push_back(1);
  return d;
}

std::string sizeText(const Dims& d) {
  std::string s;
  for (std::size_t i = 0; i < d.size(); ++i) {
    if (i) s += 'x';
    s += std::to_string(d[i]);
  }
  return s;
}

std::string sizeText(const vxArray* a) { return sizeText(dimsOf(a)); }

const char* classNameOf(const vxArray* a) { return vxGetClassName(a); }

bool isNumberLike(const vxArray* a) noexcept {
  const vxClassID c = vxGetClassID(a);
  return c == vxLOGICAL_CLASS || c == vxCHAR_CLASS || (c >= vxDOUBLE_CLASS && c <= vxUINT64_CLASS);
}

bool isText(const vxArray* a) noexcept {
  if (vxIsChar(a)) return vxGetM(a) <= 1 || vxIsEmpty(a);
  return vxIsString(a) && vxGetNumberOfElements(a) == 1;
}

namespace {

template <class T>
const T* typed(const vxArray* a) {
  return static_cast<const T*>(vxGetData(a));
}

template <class T>
T* typedMut(vxArray* a) {
  return static_cast<T*>(vxGetData(a));
}

[[noreturn]] void notNumbers(const vxArray* a) { throw Error("VANTEL:sgsh:NotNumeric", classNameOf(a)); }

template <class T>
T saturate(double v) {
  if (std::isnan(v)) return 0;
  const double r = std::round(v);
  if (r <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
  if (r >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
  return static_cast<T>(r);
}

}  // namespace

double realAt(const vxArray* a, vxIndex i) {
  switch (vxGetClassID(a)) {
    case vxDOUBLE_CLASS:
      return vxIsComplex(a) ? vxGetComplexDoubles(a)[i].real() : vxGetPr(a)[i];
    case vxLOGICAL_CLASS: return vxGetLogicals(a)[i] ? 1.0 : 0.0;
    case vxCHAR_CLASS: return static_cast<double>(vxGetChars(a)[i]);
    case vxSINGLE_CLASS: return typed<float>(a)[i];
    case vxINT8_CLASS: return typed<std::int8_t>(a)[i];
    case vxUINT8_CLASS: return typed<std::uint8_t>(a)[i];
    case vxINT16_CLASS: return typed<std::int16_t>(a)[i];
    case vxUINT16_CLASS: return typed<std::uint16_t>(a)[i];
    case vxINT32_CLASS: return typed<std::int32_t>(a)[i];
    case vxUINT32_CLASS: return typed<std::uint32_t>(a)[i];
    case vxINT64_CLASS: return static_cast<double>(typed<std::int64_t>(a)[i]);
    case vxUINT64_CLASS: return static_cast<double>(typed<std::uint64_t>(a)[i]);
    default: notNumbers(a);
  }
}

std::complex<double> complexAt(const vxArray* a, vxIndex i) {
  if (vxGetClassID(a) == vxDOUBLE_CLASS && vxIsComplex(a)) return vxGetComplexDoubles(a)[i];
  return {realAt(a, i), 0.0};
}

Value makeArray(vxClassID cls, const Dims& dimsIn, bool complex) {
  const Dims dims = normalized(dimsIn);
  checkedCount(dims, "array");
  switch (cls) {
    case vxDOUBLE_CLASS:
    case vxSINGLE_CLASS:
    case vxINT8_CLASS:
    case vxUINT8_CLASS:
    case vxINT16_CLASS:
    case vxUINT16_CLASS:
    case vxINT32_CLASS:
    case vxUINT32_CLASS:
    case vxINT64_CLASS:
    case vxUINT64_CLASS:
      return Value(vxCreateNumericArray(dims.size(), dims.data(), cls, complex ? vxCOMPLEX : vxREAL));
    case vxLOGICAL_CLASS: return Value(vxCreateLogicalArray(dims.size(), dims.data()));
    case vxCHAR_CLASS: return Value(vxCreateCharArray(dims.size(), dims.data()));
    case vxCELL_CLASS: return Value(vxCreateCellArray(dims.size(), dims.data()));
    case vxSTRUCT_CLASS: return Value(vxCreateStructArray(dims.size(), dims.data(), 0, nullptr));
    case vxSTRING_CLASS: {
      Value v(vxCreateStringArray(dims[0], countOf(dims) / (dims[0] ? dims[0] : 1)));
      if (dims.size() > 2) vxSetDimensions(v.mut(), dims.data(), dims.size());
      return v;
    }
    default:
      throw Error("VANTEL:sgsh:CannotCreate", sizeText(dims));
  }
}

Value makeLike(const vxArray* proto, const Dims& dimsIn) {
  const vxClassID cls = vxGetClassID(proto);
  checkedCount(dimsIn, "array");
  if (cls == vxSTRUCT_CLASS) {
    const Dims dims = normalized(dimsIn);
    std::vector<std::string> names = fieldNames(proto);
    std::vector<const char*> ptrs;
    for (const std::string& n : names) ptrs.push_back(n.c_str());
    return Value(vxCreateStructArray(dims.size(), dims.data(), static_cast<int>(ptrs.size()), ptrs.data()));
  }
  if (cls == vxOBJECT_CLASS) {
    const Dims dims = normalized(dimsIn);
    return Value(vxCreateObjectArray(dims.size(), dims.data(), vxGetObjectClassID(proto)));
  }
  if (cls == vxFUNCTION_CLASS || cls == vxOPAQUE_CLASS || cls == vxUNKNOWN_CLASS ||
      cls == vxVOID_CLASS) {
    throw Error("VANTEL:sgsh:CannotIndexClass", classNameOf(proto));
  }
  return makeArray(cls, dimsIn, vxIsComplex(proto));
}

Value doubles(const Dims& dims, const std::vector<double>& values) {
  Value v = makeArray(vxDOUBLE_CLASS, dims);
  if (!values.empty()) std::memcpy(vxGetPr(v.mut()), values.data(), values.size() * sizeof(double));
  return v;
}

Value complexes(const Dims& dims, const std::vector<std::complex<double>>& values) {
  Value v = makeArray(vxDOUBLE_CLASS, dims, true);
  std::complex<double>* p = vxGetComplexDoubles(v.mut());
  for (std::size_t i = 0; i < values.size(); ++i) p[i] = values[i];
  return narrowComplex(std::move(v));
}

Value logicals(const Dims& dims, const std::vector<bool>& values) {
  Value v = makeArray(vxLOGICAL_CLASS, dims);
  bool* p = vxGetLogicals(v.mut());
  for (std::size_t i = 0; i < values.size(); ++i) p[i] = values[i];
  return v;
}

Value cellRow(std::vector<Value> values) {
  Value c(vxCreateCellMatrix(1, values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) vxSetCell(c.mut(), i, values[i].release());
  return c;
}

std::string textOf(const vxArray* a, const char* what) {
  if (!a || !isText(a)) throw Error("VANTEL:sgsh:NotText", what);
  if (vxIsChar(a) && vxIsEmpty(a)) return {};
  return vxArrayToStdString(a);
}

std::string textOfElement(const vxArray* a, vxIndex i) {
  std::optional<std::u16string> s = vxGetStringElement(a, i);
  return s ? foundation::text::utf16ToUtf8(*s) : std::string("<missing>");
}

std::string numberAsText(double v) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Inf" : "-Inf";
  char buf[64];
  if (v == std::round(v) && std::abs(v) < 1e15) std::snprintf(buf, sizeof buf, "%.0f", v);
  else std::snprintf(buf, sizeof buf, "%.5g", v);
  return buf;
}

void copyElement(vxArray* dst, vxIndex di, const vxArray* src, vxIndex si) {
  switch (vxGetClassID(dst)) {
    case vxDOUBLE_CLASS:
      if (vxIsComplex(dst))
        vxGetComplexDoubles(dst)[di] = complexAt(src, si);
      else
        vxGetPr(dst)[di] = vxGetPr(src)[si];
      return;
    case vxLOGICAL_CLASS: vxGetLogicals(dst)[di] = vxGetLogicals(src)[si]; return;
    case vxCHAR_CLASS: vxGetChars(dst)[di] = vxGetChars(src)[si]; return;
    case vxSINGLE_CLASS:
    case vxINT8_CLASS:
    case vxUINT8_CLASS:
    case vxINT16_CLASS:
    case vxUINT16_CLASS:
    case vxINT32_CLASS:
    case vxUINT32_CLASS:
    case vxINT64_CLASS:
    case vxUINT64_CLASS: {
      const vxSize es = vxGetElementSize(dst);
      std::memcpy(static_cast<char*>(vxGetData(dst)) + di * es, static_cast<const char*>(vxGetData(src)) + si * es,
                  es);
      return;
    }
    case vxCELL_CLASS: {
      const vxArray* v = vxGetCell(src, si);
      vxSetCell(dst, di, v ? vxCreateSharedDataCopy(v) : vxCreateDoubleMatrix(0, 0, vxREAL));
      return;
    }
    case vxSTRUCT_CLASS: {
      const int n = vxGetNumberOfFields(dst);
      for (int f = 0; f < n; ++f) {
        const char* name = vxGetFieldNameByNumber(dst, f);
        const vxArray* v = vxGetField(src, si, name);
        vxSetFieldByNumber(dst, di, f, v ? vxCreateSharedDataCopy(v) : vxCreateDoubleMatrix(0, 0, vxREAL));
      }
      return;
    }
    case vxSTRING_CLASS: vxSetStringElement(dst, di, vxGetStringElement(src, si)); return;
    case vxOBJECT_CLASS: vxGetObjectElements(dst)[di] = vxGetObjectElements(src)[si]; return;
    default: throw Error("VANTEL:sgsh:CannotIndexClass", classNameOf(dst));
  }
}

Value convertTo(const vxArray* a, vxClassID cls, bool complex) {
  const vxClassID from = vxGetClassID(a);
  if (from == cls && vxIsComplex(a) == complex) return Value::copyOf(a);
  if (!isNumberLike(a)) throw Error("VANTEL:sgsh:CannotConvert", classNameOf(a), std::string(cls == vxCHAR_CLASS ? "char" : cls == vxLOGICAL_CLASS ? "logical" : "double"));
  const Dims dims = dimsOf(a);
  const vxSize n = countOf(dims);
  Value out = makeArray(cls, dims, complex);
  vxArray* o = out.mut();
  switch (cls) {
    case vxDOUBLE_CLASS:
      if (complex) {
        std::complex<double>* p = vxGetComplexDoubles(o);
        for (vxSize i = 0; i < n; ++i) p[i] = complexAt(a, i);
      } else {
        double* p = vxGetPr(o);
        for (vxSize i = 0; i < n; ++i) p[i] = realAt(a, i);
      }
      return out;
    case vxLOGICAL_CLASS: {
      bool* p = vxGetLogicals(o);
      for (vxSize i = 0; i < n; ++i) {
        const double v = realAt(a, i);
        if (std::isnan(v)) throw Error("VANTEL:sgsh:NaNToLogical");
        p[i] = v != 0;
      }
      return out;
    }
    case vxCHAR_CLASS: {
      vxChar* p = vxGetChars(o);
      for (vxSize i = 0; i < n; ++i) p[i] = saturate<std::uint16_t>(realAt(a, i));
      return out;
    }
    case vxSINGLE_CLASS: {
      float* p = typedMut<float>(o);
      for (vxSize i = 0; i < n; ++i) p[i] = static_cast<float>(realAt(a, i));
      return out;
    }
#define SGSH_INT_CASE(ID, T)                                            \
  case ID: {                                                            \
    T* p = typedMut<T>(o);                                              \
    for (vxSize i = 0; i < n; ++i) p[i] = saturate<T>(realAt(a, i));    \
    return out;                                                         \
  }
      SGSH_INT_CASE(vxINT8_CLASS, std::int8_t)
      SGSH_INT_CASE(vxUINT8_CLASS, std::uint8_t)
      SGSH_INT_CASE(vxINT16_CLASS, std::int16_t)
      SGSH_INT_CASE(vxUINT16_CLASS, std::uint16_t)
      SGSH_INT_CASE(vxINT32_CLASS, std::int32_t)
      SGSH_INT_CASE(vxUINT32_CLASS, std::uint32_t)
      SGSH_INT_CASE(vxINT64_CLASS, std::int64_t)
      SGSH_INT_CASE(vxUINT64_CLASS, std::uint64_t)
#undef SGSH_INT_CASE
    default:
      throw Error("VANTEL:sgsh:CannotConvert", classNameOf(a), "this class");
  }
}

Value narrowComplex(Value v) {
  if (!vxIsComplex(v.get())) return v;
  const vxSize n = vxGetNumberOfElements(v.get());
  const std::complex<double>* p = vxGetComplexDoubles(v.get());
  for (vxSize i = 0; i < n; ++i)
    if (p[i].imag() != 0) return v;
  return convertTo(v.get(), vxDOUBLE_CLASS, false);
}

Value gather(const vxArray* a, std::span<const vxIndex> positions, const Dims& dims) {
  const vxClassID cls = vxGetClassID(a);
  if (cls == vxFUNCTION_CLASS) {
    if (positions.size() == 1 && positions[0] == 0) return Value::copyOf(a);
    throw Error("VANTEL:sgsh:CannotIndexClass", classNameOf(a));
  }
  Value out = makeLike(a, dims);
  if (cls == vxDOUBLE_CLASS && !vxIsComplex(a)) {
    const double* s = vxGetPr(a);
    double* d = vxGetPr(out.mut());
    for (std::size_t k = 0; k < positions.size(); ++k) d[k] = s[positions[k]];
    return out;
  }
  for (std::size_t k = 0; k < positions.size(); ++k) copyElement(out.mut(), k, a, positions[k]);
  return out;
}

Value reshaped(const vxArray* a, const Dims& dimsIn) {
  const Dims dims = normalized(dimsIn);
  Value v = Value::copyOf(a);
  vxSetDimensions(v.mut(), dims.data(), dims.size());
  return v;
}

vxIndex linearOf(const Dims& dims, std::span<const vxIndex> subs) noexcept {
  vxIndex lin = 0, stride = 1;
  for (std::size_t k = 0; k < subs.size(); ++k) {
    lin += subs[k] * stride;
    stride *= k < dims.size() ? dims[k] : 1;
  }
  return lin;
}

Value resized(const vxArray* a, const Dims& dimsIn) {
  const Dims nd = normalized(dimsIn);
  const Dims od = dimsOf(a);
  Value out = makeLike(a, nd);
  const vxSize n = countOf(od);
  std::vector<vxIndex> subs(std::max(od.size(), nd.size()), 0);
  for (vxIndex i = 0; i < n; ++i) {
    vxIndex rest = i;
    for (std::size_t k = 0; k < od.size(); ++k) {
      subs[k] = rest % od[k];
      rest /= od[k];
    }
    copyElement(out.mut(), linearOf(nd, subs), a, i);
  }
  return out;
}

std::vector<std::string> fieldNames(const vxArray* s) {
  std::vector<std::string> names;
  const int n = vxGetNumberOfFields(s);
  for (int f = 0; f < n; ++f) names.emplace_back(vxGetFieldNameByNumber(s, f));
  return names;
}

}  // namespace sgsh::ops
