// The display of values: numbers in aligned columns with one format per
// array, logicals, text, strings, cells, structs, function handles, empty
// values, and objects through the object bridge.
#include "sgsh/Display.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <foundation/io/Printing.h>
#include <vx/vx.h>

#include "eval/ArrayOps.h"
#include "eval/ObjectBridge.h"
#include "foundation/text/Utf.h"

namespace sgsh {

namespace {

constexpr const char* kIndent = "    ";
constexpr const char* kColumnGap = "   ";
constexpr std::size_t kInlineVectorMax = 10;

enum class NumberStyle { Integer, Fixed, Exponent };

NumberFormat currentFormat = NumberFormat::Short;

std::string formatReal(double v, NumberStyle style) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Inf" : "-Inf";
  if (v == 0) return "0";
  const int digits = currentFormat == NumberFormat::Long ? 15 : 4;
  char buf[64];
  switch (style) {
    case NumberStyle::Integer: std::snprintf(buf, sizeof buf, "%.0f", v); break;
    case NumberStyle::Fixed: std::snprintf(buf, sizeof buf, "%.*f", digits, v); break;
    case NumberStyle::Exponent: std::snprintf(buf, sizeof buf, "%.*e", digits, v); break;
  }
  return buf;
}

// One style for all the parts of an array.
NumberStyle styleFor(const std::vector<double>& parts) {
  bool integers = true;
  double maxAbs = 0;
  for (double v : parts) {
    if (!std::isfinite(v)) continue;
    if (v != std::round(v)) integers = false;
    maxAbs = std::max(maxAbs, std::abs(v));
  }
  if (integers && maxAbs < 1e10) return NumberStyle::Integer;
  if (maxAbs >= 1e5 || (maxAbs > 0 && maxAbs < 1e-3)) return NumberStyle::Exponent;
  return NumberStyle::Fixed;
}

std::string integerText(const vxArray* a, vxIndex i) {
  const void* d = vxGetData(a);
  switch (vxGetClassID(a)) {
    case vxUINT64_CLASS: return std::to_string(static_cast<const std::uint64_t*>(d)[i]);
    case vxINT64_CLASS: return std::to_string(static_cast<const std::int64_t*>(d)[i]);
    default: return std::to_string(static_cast<long long>(ops::realAt(a, i)));
  }
}

// The elements of a number-like array as text, all in one style.
std::vector<std::string> numberTexts(const vxArray* a) {
  const vxSize n = vxGetNumberOfElements(a);
  std::vector<std::string> out(n);
  if (vxIsLogical(a)) {
    for (vxSize i = 0; i < n; ++i) out[i] = vxGetLogicals(a)[i] ? "1" : "0";
    return out;
  }
  if (vxIsComplex(a)) {
    std::vector<double> parts;
    for (vxSize i = 0; i < n; ++i) {
      const std::complex<double> c = ops::complexAt(a, i);
      parts.push_back(c.real());
      parts.push_back(c.imag());
    }
    const NumberStyle st = styleFor(parts);
    for (vxSize i = 0; i < n; ++i) {
      const std::complex<double> c = ops::complexAt(a, i);
      const bool neg = c.imag() < 0;
      out[i] = formatReal(c.real(), st) + (neg ? " - " : " + ") + formatReal(std::abs(c.imag()), st) + "i";
    }
    return out;
  }
  if (const vxClassID c = vxGetClassID(a); c >= vxINT8_CLASS && c <= vxUINT64_CLASS) {
    // Integers print whole and exact, beyond the digits a double holds.
    for (vxSize i = 0; i < n; ++i) out[i] = integerText(a, i);
    return out;
  }
  std::vector<double> parts(n);
  for (vxSize i = 0; i < n; ++i) parts[i] = ops::realAt(a, i);
  const NumberStyle st = styleFor(parts);
  for (vxSize i = 0; i < n; ++i) out[i] = formatReal(parts[i], st);
  return out;
}

std::string charRow(const vxArray* a, vxSize row) {
  const vxSize m = vxGetM(a), n = vxGetN(a);
  std::u16string s;
  for (vxSize j = 0; j < n; ++j) s.push_back(vxGetChars(a)[row + j * m]);
  return foundation::text::utf16ToUtf8(s);
}

std::string quotedString(const vxArray* a, vxIndex i) {
  std::optional<std::u16string> s = vxGetStringElement(a, i);
  return s ? "\"" + foundation::text::utf16ToUtf8(*s) + "\"" : "<missing>";
}

std::string emptyText(const vxArray* a) {
  const ops::Dims d = ops::dimsOf(a);
  const bool zeroByZero = d.size() == 2 && d[0] == 0 && d[1] == 0;
  if (zeroByZero && vxIsDouble(a)) return "[]";
  if (zeroByZero && vxIsCell(a)) return "{}";
  if (vxIsChar(a) && d.size() == 2 && d[0] <= 1) return "''";
  return ops::sizeText(d) + " empty " + vxGetClassName(a);
}

// Lines of a 2-D grid of texts. Numbers are right-aligned in one common
// width; other texts are left-aligned, each column as wide as its widest.
std::string grid(const std::vector<std::string>& cells, vxSize m, vxSize n, bool leftAlign = false) {
  std::vector<std::size_t> w(n, 0);
  std::size_t all = 0;
  for (vxSize j = 0; j < n; ++j)
    for (vxSize i = 0; i < m; ++i) {
      w[j] = std::max(w[j], cells[i + j * m].size());
      all = std::max(all, w[j]);
    }
  std::string out;
  for (vxSize i = 0; i < m; ++i) {
    out += kIndent;
    for (vxSize j = 0; j < n; ++j) {
      const std::string& c = cells[i + j * m];
      if (j) out += kColumnGap;
      if (leftAlign) {
        out += c;
        if (j + 1 < n) out.append(w[j] - c.size(), ' ');
      } else {
        out.append(all - c.size(), ' ');
        out += c;
      }
    }
    out += '\n';
  }
  return out;
}

bool isPlainScalar(const vxArray* a) {
  return vxGetNumberOfElements(a) == 1 && (ops::isNumberLike(a) || vxIsString(a) || vxIsFunctionHandle(a));
}

std::string scalarText(const vxArray* a) {
  if (vxIsLogical(a)) return vxGetLogicals(a)[0] ? "true" : "false";
  if (vxIsChar(a)) return "'" + charRow(a, 0) + "'";
  if (vxIsString(a)) return quotedString(a, 0);
  if (vxIsFunctionHandle(a)) return vxGetFunctionHandle(a)->text();
  return numberTexts(a)[0];
}

std::string summaryIn(const vxArray* a, ObjectBridge::CompactForm form) {
  if (a && vxIsObject(a)) {
    // A class with a compact display decides how its objects stand in a
    // struct or cell.
    std::string compact = ObjectBridge::current().compactText(a, form);
    if (!compact.empty()) return compact;
  }
  return summaryText(a);
}

// The lines of a 2-D page of a non-scalar array.
std::string page(const vxArray* a) {
  const vxSize m = vxGetM(a), n = vxGetN(a);
  if (vxIsChar(a)) {
    std::string out;
    for (vxSize i = 0; i < m; ++i) out += std::string(kIndent) + "'" + charRow(a, i) + "'\n";
    return out;
  }
  std::vector<std::string> cells(m * n);
  if (vxIsString(a)) {
    for (vxSize i = 0; i < m * n; ++i) cells[i] = quotedString(a, i);
    return grid(cells, m, n, true);
  }
  if (vxIsCell(a)) {
    for (vxSize i = 0; i < m * n; ++i)
      cells[i] = "{" + summaryIn(vxGetCell(a, i), ObjectBridge::CompactForm::Column) + "}";
    return grid(cells, m, n, true);
  }
  return grid(numberTexts(a), m, n);
}

std::string structBody(const vxArray* a) {
  const std::vector<std::string> names = ops::fieldNames(a);
  std::string out;
  if (vxGetNumberOfElements(a) == 1) {
    out += "  struct with fields:\n";
    std::size_t w = 0;
    for (const std::string& f : names) w = std::max(w, f.size());
    for (std::size_t f = 0; f < names.size(); ++f) {
      out += kIndent;
      out.append(w - names[f].size(), ' ');
      const vxArray* value = vxGetFieldByNumber(a, 0, static_cast<int>(f));
      out += names[f] + ": " + summaryIn(value, ObjectBridge::CompactForm::SingleLine) + "\n";
    }
    return out;
  }
  out += "  " + ops::sizeText(a) + " struct array with fields:\n";
  for (const std::string& f : names) out += std::string(kIndent) + f + "\n";
  return out;
}

// Lines for a non-scalar value, after the header line.
std::string body(const vxArray* a) {
  if (vxIsStruct(a)) return structBody(a);
  const ops::Dims d = ops::dimsOf(a);
  std::string out;
  const bool classLine = !vxIsDouble(a) && !vxIsChar(a);
  if (classLine) out += "  " + ops::sizeText(d) + " " + vxGetClassName(a) + "\n";
  if (d.size() <= 2) return out + page(a);
  // Higher dimensions: one page per trailing index.
  const vxSize per = d[0] * d[1], pages = ops::countOf(d) / per;
  for (vxSize p = 0; p < pages; ++p) {
    std::string label = "(:,:";
    vxSize rest = p;
    for (std::size_t k = 2; k < d.size(); ++k) {
      label += "," + std::to_string(rest % d[k] + 1);
      rest /= d[k];
    }
    std::vector<vxIndex> pos(per);
    for (vxSize i = 0; i < per; ++i) pos[i] = p * per + i;
    Value pg = ops::gather(a, pos, {d[0], d[1]});
    out += "  " + label + ")\n" + page(pg.get());
  }
  return out;
}

}  // namespace

std::string numberText(double v) { return formatReal(v, styleFor({v})); }

std::string summaryText(const vxArray* a) {
  if (!a) return "[]";
  if (vxIsObject(a)) return ops::sizeText(a) + " " + vxGetClassName(a);
  if (vxIsEmpty(a)) return emptyText(a);
  if (isPlainScalar(a)) return scalarText(a);
  if (vxIsChar(a) && vxGetM(a) == 1) return "'" + charRow(a, 0) + "'";
  const ops::Dims d = ops::dimsOf(a);
  if ((ops::isNumberLike(a) && !vxIsChar(a)) && d.size() == 2 && d[0] == 1 && d[1] <= kInlineVectorMax) {
    std::string s = "[";
    const std::vector<std::string> t = numberTexts(a);
    for (std::size_t i = 0; i < t.size(); ++i) s += (i ? " " : "") + t[i];
    return s + "]";
  }
  return ops::sizeText(d) + " " + vxGetClassName(a);
}

std::string displayText(const std::string& name, const vxArray* a) {
  if (vxIsObject(a)) return ObjectBridge::current().display(name, a);
  if (vxIsEmpty(a)) return name + " = " + emptyText(a) + "\n";
  if (isPlainScalar(a)) return name + " = " + scalarText(a) + "\n";
  if (vxIsChar(a) && vxGetM(a) == 1 && vxGetNumberOfDimensions(a) == 2) return name + " = '" + charRow(a, 0) + "'\n";
  return name + " =\n" + body(a);
}

std::string dispText(const vxArray* a) {
  // Objects first: a class with its own display shows its empty arrays too.
  if (vxIsObject(a)) return ObjectBridge::current().display("", a);
  if (vxIsEmpty(a) && !vxIsStruct(a)) return "";
  if (vxIsChar(a)) {
    std::string out;
    for (vxSize i = 0; i < vxGetM(a); ++i) out += charRow(a, i) + "\n";
    return out;
  }
  if (isPlainScalar(a)) {
    if (vxIsString(a)) {
      std::optional<std::u16string> s = vxGetStringElement(a, 0);
      return (s ? foundation::text::utf16ToUtf8(*s) : "<missing>") + "\n";
    }
    return scalarText(a) + "\n";
  }
  return body(a);
}

void setNumberFormat(NumberFormat format) noexcept {
  currentFormat = format;
  // Object displays written below the language follow the same setting.
  services::io::setLongNumbers(format == NumberFormat::Long);
}
NumberFormat numberFormat() noexcept { return currentFormat; }

}  // namespace sgsh
