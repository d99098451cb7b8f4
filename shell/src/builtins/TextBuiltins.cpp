// Text built-ins: the formatting engine of sprintf and fprintf, number to
// text, comparisons, case, and a few text utilities.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "builtins/BuiltinSupport.h"
#include "foundation/text/Utf.h"
#include "sgsh/Display.h"
#include "sgsh/Output.h"

namespace sgsh::builtins {
namespace {

// One argument item the format consumes: a number, or a whole text.
struct Item {
  bool isText = false;
  double number = 0;
  std::string text;
};

std::vector<Item> flatten(Args args) {
  std::vector<Item> items;
  for (const Value& v : args) {
    const vxArray* a = v.get();
    if (vxIsChar(a)) {
      items.push_back({true, 0, vxIsEmpty(a) ? std::string() : foundation::text::utf16ToUtf8(matrix::get_ustring(a))});
    } else if (vxIsString(a)) {
      for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) items.push_back({true, 0, ops::textOfElement(a, i)});
    } else if (ops::isNumberLike(a)) {
      for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) items.push_back({false, ops::realAt(a, i), {}});
    } else if (vxIsCell(a)) {
      throw Error("VANTEL:sgsh:FormatCell");
    } else {
      throw Error("VANTEL:sgsh:FormatArgument", vxGetClassName(a));
    }
  }
  return items;
}

// Backslash escapes of a format.
std::string unescape(const std::string& f) {
  std::string out;
  for (std::size_t i = 0; i < f.size(); ++i) {
    if (f[i] != '\\' || i + 1 == f.size()) {
      out.push_back(f[i]);
      continue;
    }
    switch (f[++i]) {
      case 'n': out.push_back('\n'); break;
      case 't': out.push_back('\t'); break;
      case 'r': out.push_back('\r'); break;
      case 'a': out.push_back('\a'); break;
      case '\\': out.push_back('\\'); break;
      default: out.push_back('\\'); out.push_back(f[i]); break;
    }
  }
  return out;
}

std::string shortNumber(double v) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Inf" : "-Inf";
  char buf[64];
  if (v == std::round(v) && std::abs(v) < 1e15) std::snprintf(buf, sizeof buf, "%.0f", v);
  else std::snprintf(buf, sizeof buf, "%g", v);
  return buf;
}

// Widths and precisions of a directive stay below this, so one conversion
// never asks for more than a few kilobytes.
constexpr unsigned long kMaxFieldWidth = 4096;

// snprintf into a string of the size the result needs.
template <typename T>
std::string printed(const std::string& format, T value) {
  char small[128];
  const int n = std::snprintf(small, sizeof small, format.c_str(), value);
  if (n < 0) throw Error("VANTEL:sgsh:BadFormatDirective", format);
  if (static_cast<std::size_t>(n) < sizeof small) return std::string(small, static_cast<std::size_t>(n));
  std::string out(static_cast<std::size_t>(n) + 1, '\0');
  std::snprintf(out.data(), out.size(), format.c_str(), value);
  out.resize(static_cast<std::size_t>(n));
  return out;
}

std::string convertOne(const std::string& directive, char conv, const Item& item) {
  std::string s = directive;
  switch (conv) {
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
    case 'o': {
      if (item.isText) {
        s += 's';
        return printed(s, item.text.c_str());
      }
      const double v = item.number;
      // Integers beyond the 64-bit range, and negative ones for the
      // unsigned conversions, have no exact integer form here.
      constexpr double k2p63 = 9223372036854775808.0;
      const bool fits = v >= -k2p63 && v < k2p63 && (v >= 0 || conv == 'd' || conv == 'i');
      if (v != std::round(v) || !std::isfinite(v) || !fits) {
        // A number that is not an integer prints in exponent form.
        if (!std::isfinite(v)) return std::isnan(v) ? "NaN" : v > 0 ? "Inf" : "-Inf";
        s += 'e';
        return printed(s, v);
      }
      s += "ll";
      s += conv == 'i' ? 'd' : conv;
      return printed(s, static_cast<long long>(v));
    }
    case 'f':
    case 'e':
    case 'g':
    case 'E':
    case 'G': {
      if (item.isText) {
        s += 's';
        return printed(s, item.text.c_str());
      }
      if (!std::isfinite(item.number)) {
        s += 's';
        return printed(s, std::isnan(item.number) ? "NaN" : item.number > 0 ? "Inf" : "-Inf");
      }
      s += conv;
      return printed(s, item.number);
    }
    case 'c':
    case 's': {
      std::string text = item.isText ? item.text
                         : conv == 'c' && item.number >= 0 && item.number <= 0xFFFF
                             ? foundation::text::utf16ToUtf8(std::u16string(1, static_cast<char16_t>(item.number)))
                                       : shortNumber(item.number);
      if (s == "%") return text;  // whole, NUL characters included
      s += 's';
      return printed(s, text.c_str());
    }
    default:
      return directive + conv;
  }
}

}  // namespace

std::string formatText(const std::string& formatIn, Args args) {
  const std::string format = unescape(formatIn);
  const std::vector<Item> items = flatten(args);
  std::string out;
  std::size_t next = 0;
  for (;;) {
    bool consumed = false;
    for (std::size_t i = 0; i < format.size(); ++i) {
      if (format[i] != '%') {
        out.push_back(format[i]);
        continue;
      }
      if (i + 1 < format.size() && format[i + 1] == '%') {
        out.push_back('%');
        ++i;
        continue;
      }
      // %[flags][width][.precision]conversion
      std::size_t j = i + 1;
      while (j < format.size() && std::strchr("-+ #0", format[j])) ++j;
      auto field = [&] {
        unsigned long v = 0;
        while (j < format.size() && std::isdigit(static_cast<unsigned char>(format[j]))) {
          v = std::min(v * 10 + static_cast<unsigned long>(format[j] - '0'), kMaxFieldWidth);
          ++j;
        }
        if (v >= kMaxFieldWidth) throw Error("VANTEL:sgsh:FormatWidth", kMaxFieldWidth);
      };
      field();
      if (j < format.size() && format[j] == '.') {
        ++j;
        field();
      }
      if (j >= format.size()) {
        out += format.substr(i);
        break;
      }
      if (next >= items.size()) {
        // Out of arguments: stop at the first conversion without data,
        // except on the first pass when there were none at all.
        if (!items.empty() || consumed) return out;
        i = j;
        continue;
      }
      out += convertOne(format.substr(i, j - i), format[j], items[next++]);
      consumed = true;
      i = j;
    }
    if (next >= items.size() || !consumed) break;
  }
  return out;
}

namespace {

void bSprintf(Interpreter&, int, Out& out, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "sprintf");
  out.push_back(Value::text(formatText(textArg("sprintf", in[0]), in.subspan(1))));
}

void bFprintf(Interpreter&, int, Out&, Args in) {
  if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "fprintf");
  int fid = 1;
  if (ops::isNumberLike(in[0].get()) && !vxIsChar(in[0].get())) {
    const double f = scalarArg("fprintf", in[0]);
    fid = f == 1 || f == 2 ? static_cast<int>(f) : -1;
    if (fid < 0) throw Error("VANTEL:sgsh:BadFileId", ops::numberAsText(f));
    in = in.subspan(1);
    if (in.empty()) throw Error("VANTEL:sgsh:NotEnoughInputs", "fprintf");
  }
  const std::string text = formatText(textArg("fprintf", in[0]), in.subspan(1));
  if (fid == 1) writeOutput(text);
  else if (fid == 2) std::fwrite(text.data(), 1, text.size(), stderr);
  else throw Error("VANTEL:sgsh:BadFileId", fid);
}

std::string num2strScalar(double v) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Inf" : "-Inf";
  char buf[64];
  if (v == std::round(v) && std::abs(v) < 1e15) {
    std::snprintf(buf, sizeof buf, "%.0f", v);
  } else if (std::abs(v) >= 9007199254740992.0) {
    // Past 2^53 not every integer is a double: five significant digits, as
    // the display shows them (1e63 is 1e+63).
    std::snprintf(buf, sizeof buf, "%.5g", v);
  } else {
    // Four digits after the leading ones: pi gives 3.1416, 123.456 stays;
    // at most the digits a double holds, so 1e63 stays 1e+63.
    const int lead = v == 0 ? 1 : std::max(static_cast<int>(std::floor(std::log10(std::abs(v)))) + 1, 1);
    std::snprintf(buf, sizeof buf, "%.*g", std::min(lead + 4, 16), v);
  }
  return buf;
}

void bNum2str(Interpreter&, int, Out& out, Args in) {
  checkArgs("num2str", in, 1, 2);
  const vxArray* a = in[0].get();
  if (vxIsChar(a)) {
    out.push_back(in[0]);
    return;
  }
  if (!ops::isNumberLike(a)) throw Error("VANTEL:sgsh:NotNumeric", vxGetClassName(a));
  if (in.size() == 2) {
    if (vxIsChar(in[1].get())) {
      out.push_back(Value::text(formatText(textArg("num2str", in[1]), in.first(1))));
      return;
    }
    const double p = scalarArg("num2str", in[1]);
    if (!(p >= 1) || p != std::floor(p)) throw Error("VANTEL:sgsh:BadPrecision", "num2str");
    const int prec = static_cast<int>(std::min(p, 17.0));
    std::string s;
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) {
      char buf[64];
      std::snprintf(buf, sizeof buf, "%.*g", prec, ops::realAt(a, i));
      s += (i ? "  " : "") + std::string(buf);
    }
    out.push_back(Value::text(s));
    return;
  }
  const vxSize m = vxGetM(a), n = vxGetN(a);
  std::vector<std::string> rows(m);
  for (vxSize i = 0; i < m; ++i)
    for (vxSize j = 0; j < n; ++j) {
      std::string t;
      if (vxIsComplex(a)) {
        const std::complex<double> c = ops::complexAt(a, i + j * m);
        t = num2strScalar(c.real()) + (c.imag() < 0 ? "-" : "+") + num2strScalar(std::abs(c.imag())) + "i";
      } else {
        t = num2strScalar(ops::realAt(a, i + j * m));
      }
      rows[i] += (j ? "  " : "") + t;
    }
  if (m == 1) {
    out.push_back(Value::text(rows[0]));
    return;
  }
  std::size_t w = 0;
  for (const std::string& r : rows) w = std::max(w, r.size());
  Value r = ops::makeArray(vxCHAR_CLASS, {m, w});
  for (vxSize i = 0; i < m; ++i) {
    const std::string padded = std::string(w - rows[i].size(), ' ') + rows[i];
    for (std::size_t j = 0; j < w; ++j) vxGetChars(r.mut())[i + j * m] = static_cast<vxChar>(padded[j]);
  }
  out.push_back(std::move(r));
}

void bInt2str(Interpreter& in_, int nargout, Out& out, Args in) {
  checkArgs("int2str", in, 1, 1);
  const vxArray* a = in[0].get();
  std::vector<double> r(vxGetNumberOfElements(a));
  for (vxSize i = 0; i < r.size(); ++i) r[i] = std::round(ops::realAt(a, i));
  std::vector<Value> args{ops::doubles(ops::dimsOf(a), r)};
  bNum2str(in_, nargout, out, args);
}

// strcmp over text, cells of text, or one of each.
template <bool IgnoreCase>
void compare(Interpreter&, int, Out& out, Args in) {
  checkArgs(IgnoreCase ? "strcmpi" : "strcmp", in, 2, 2);
  auto norm = [](std::string s) {
    if (IgnoreCase) std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
  };
  auto textAt = [&](const vxArray* x, vxIndex i, bool& ok) -> std::string {
    const vxArray* el = vxIsCell(x) ? vxGetCell(x, i) : x;
    if (vxIsString(x)) return norm(ops::textOfElement(x, i));
    ok = el && ops::isText(el);
    return ok ? norm(ops::textOf(el)) : std::string();
  };
  const vxArray *a = in[0].get(), *b = in[1].get();
  const bool manyA = vxIsCell(a) || (vxIsString(a) && vxGetNumberOfElements(a) != 1);
  const bool manyB = vxIsCell(b) || (vxIsString(b) && vxGetNumberOfElements(b) != 1);
  if (!manyA && !manyB) {
    bool okA = true, okB = true;
    const std::string x = textAt(a, 0, okA), y = textAt(b, 0, okB);
    out.push_back(Value::logical(okA && okB && x == y));
    return;
  }
  const vxArray* shape = manyA ? a : b;
  const vxSize n = vxGetNumberOfElements(shape);
  if (manyA && manyB && vxGetNumberOfElements(a) != vxGetNumberOfElements(b))
    throw Error("VANTEL:sgsh:SizeMismatch", "strcmp", ops::sizeText(a), ops::sizeText(b));
  std::vector<bool> r(n);
  for (vxSize i = 0; i < n; ++i) {
    bool okA = true, okB = true;
    const std::string x = textAt(a, manyA ? i : 0, okA), y = textAt(b, manyB ? i : 0, okB);
    r[i] = okA && okB && x == y;
  }
  out.push_back(ops::logicals(ops::dimsOf(shape), r));
}

// upper/lower of text, strings and cells of text.
template <bool Upper>
Value recase(const vxArray* a) {
  auto map = [](char16_t c) -> char16_t {
    if (Upper && c < 128) return static_cast<char16_t>(std::toupper(c));
    if (!Upper && c < 128) return static_cast<char16_t>(std::tolower(c));
    return c;
  };
  if (vxIsChar(a)) {
    Value r = Value::copyOf(a);
    vxChar* p = vxGetChars(r.mut());
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) p[i] = map(p[i]);
    return r;
  }
  if (vxIsString(a)) {
    Value r = Value::copyOf(a);
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) {
      std::optional<std::u16string> s = vxGetStringElement(a, i);
      if (s) std::transform(s->begin(), s->end(), s->begin(), map);
      vxSetStringElement(r.mut(), i, s);
    }
    return r;
  }
  if (vxIsCell(a)) {
    Value r = Value::copyOf(a);
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) vxSetCell(r.mut(), i, recase<Upper>(vxGetCell(a, i)).release());
    return r;
  }
  throw Error("VANTEL:sgsh:NotText", Upper ? "upper" : "lower");
}

template <bool Upper>
void bCase(Interpreter&, int, Out& out, Args in) {
  checkArgs(Upper ? "upper" : "lower", in, 1, 1);
  out.push_back(recase<Upper>(in[0].get()));
}

void bStrtrim(Interpreter&, int, Out& out, Args in) {
  checkArgs("strtrim", in, 1, 1);
  std::string s = textArg("strtrim", in[0]);
  const auto notSpace = [](unsigned char c) { return !std::isspace(c); };
  s.erase(s.begin(), std::find_if(s.begin(), s.end(), notSpace));
  s.erase(std::find_if(s.rbegin(), s.rend(), notSpace).base(), s.end());
  out.push_back(Value::text(s));
}

void bStrrep(Interpreter&, int, Out& out, Args in) {
  checkArgs("strrep", in, 3, 3);
  std::string s = textArg("strrep", in[0]);
  const std::string from = textArg("strrep", in[1]), to = textArg("strrep", in[2]);
  if (!from.empty())
    for (std::size_t p = s.find(from); p != std::string::npos; p = s.find(from, p + to.size())) s.replace(p, from.size(), to);
  out.push_back(Value::text(s));
}

void bStrcat(Interpreter&, int, Out& out, Args in) {
  std::string s;
  for (const Value& v : in) s += textArg("strcat", v);
  out.push_back(Value::text(s));
}

void bStrsplit(Interpreter&, int, Out& out, Args in) {
  checkArgs("strsplit", in, 1, 2);
  const std::string s = textArg("strsplit", in[0]);
  const std::string sep = in.size() == 2 ? textArg("strsplit", in[1]) : " ";
  std::vector<Value> parts;
  std::size_t start = 0;
  for (std::size_t p; !sep.empty() && (p = s.find(sep, start)) != std::string::npos; start = p + sep.size())
    parts.push_back(Value::text(s.substr(start, p - start)));
  parts.push_back(Value::text(s.substr(start)));
  out.push_back(ops::cellRow(std::move(parts)));
}

void bStrjoin(Interpreter&, int, Out& out, Args in) {
  checkArgs("strjoin", in, 1, 2);
  if (!isCellOfText(in[0].get())) throw Error("VANTEL:sgsh:NotText", "strjoin");
  const std::string sep = in.size() == 2 ? textArg("strjoin", in[1]) : " ";
  std::string s;
  for (vxSize i = 0; i < vxGetNumberOfElements(in[0].get()); ++i)
    s += (i ? sep : "") + ops::textOf(vxGetCell(in[0].get(), i));
  out.push_back(Value::text(s));
}

void bStr2double(Interpreter&, int, Out& out, Args in) {
  checkArgs("str2double", in, 1, 1);
  double v = std::numeric_limits<double>::quiet_NaN();
  if (ops::isText(in[0].get())) {
    const std::string t = ops::textOf(in[0].get());
    char* end = nullptr;
    const double x = std::strtod(t.c_str(), &end);
    if (!t.empty() && end && *end == '\0') v = x;
  }
  out.push_back(Value::scalar(v));
}

void bContains(Interpreter&, int, Out& out, Args in) {
  checkArgs("contains", in, 2, 2);
  out.push_back(Value::logical(textArg("contains", in[0]).find(textArg("contains", in[1])) != std::string::npos));
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerTextBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bSprintf>("sprintf", "s = sprintf(format, x, ...)",
                  "Formats values into text.");
  r.add<bFprintf>("fprintf", "fprintf(format, x, ...)",
                  "Formats values and prints them.");
  r.add<bNum2str>("num2str", "s = num2str(x)\ns = num2str(x, digits)\ns = num2str(x, format)",
                  "A number as text.");
  r.add<bInt2str>("int2str", "s = int2str(x)",
                  "A number rounded to an integer, as text.");
  r.add<compare<false>>("strcmp", "tf = strcmp(a, b)",
                        "True when texts are equal.");
  r.add<compare<true>>("strcmpi", "tf = strcmpi(a, b)",
                       "True when texts are equal, case ignored.");
  r.add<bCase<true>>("upper", "s = upper(text)",
                     "Text in upper case.");
  r.add<bCase<false>>("lower", "s = lower(text)",
                      "Text in lower case.");
  r.add<bStrtrim>("strtrim", "s = strtrim(text)",
                  "Text without leading and trailing white space.");
  r.add<bStrrep>("strrep", "s = strrep(text, old, new)",
                 "Replaces every occurrence of a text.");
  r.add<bStrcat>("strcat", "s = strcat(a, b, ...)",
                 "Joins texts; trailing blanks of char arguments are dropped.");
  r.add<bStrsplit>("strsplit", "c = strsplit(text)\nc = strsplit(text, delimiter)",
                   "Splits text at blanks or at the delimiter.");
  r.add<bStrjoin>("strjoin", "s = strjoin(c)\ns = strjoin(c, delimiter)",
                  "Joins a cell of texts with blanks or the delimiter.");
  r.add<bStr2double>("str2double", "x = str2double(text)",
                     "A number read from text; NaN when it is not one.");
  r.add<bContains>("contains", "tf = contains(text, pattern)",
                   "True when the text contains the pattern.");
}

}  // namespace sgsh
