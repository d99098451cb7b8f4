// Built-ins about values in general: display, shape, creation, class tests
// and conversions, structs and cells.
#include <cmath>
#include <limits>

#include "builtins/BuiltinSupport.h"
#include "eval/Concat.h"
#include "eval/Indexing.h"
#include "foundation/text/Utf.h"
#include "sgsh/Display.h"
#include "sgsh/Output.h"

namespace sgsh::builtins {
namespace {

void bDisp(Interpreter&, int, Out&, Args in) {
  checkArgs("disp", in, 1, 1);
  writeOutput(dispText(in[0].get()));
}

// format, format short, format long: digits of the numbers displayed after.
void bFormat(Interpreter&, int, Out&, Args in) {
  checkArgs("format", in, 0, 1);
  const std::string style = in.empty() ? "short" : textArg("format", in[0]);
  if (style == "short")
    setNumberFormat(NumberFormat::Short);
  else if (style == "long")
    setNumberFormat(NumberFormat::Long);
  else
    throw Error("VANTEL:sgsh:BadFormat", style);
}

void bNumel(Interpreter&, int, Out& out, Args in) {
  checkArgs("numel", in, 1, 1);
  out.push_back(Value::scalar(static_cast<double>(vxGetNumberOfElements(in[0].get()))));
}

void bSize(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("size", in, 1, 2);
  const ops::Dims d = ops::dimsOf(in[0].get());
  if (in.size() == 2) {
    const double k = scalarArg("size", in[1]);
    if (!(k >= 1) || k != std::floor(k)) throw Error("VANTEL:sgsh:BadDimension", "size");
    const std::size_t i = ops::positionFrom(k);
    out.push_back(Value::scalar(i < d.size() ? static_cast<double>(d[i]) : 1.0));
    return;
  }
  if (nargout <= 1) {
    std::vector<double> v(d.begin(), d.end());
    out.push_back(ops::doubles({1, d.size()}, v));
    return;
  }
  // [m, n] = size(x): the last output takes the product of the rest.
  for (int k = 0; k < nargout; ++k) {
    double e = k < static_cast<int>(d.size()) ? static_cast<double>(d[k]) : 1.0;
    if (k == nargout - 1)
      for (std::size_t j = k + 1; j < d.size(); ++j) e *= static_cast<double>(d[j]);
    out.push_back(Value::scalar(e));
  }
}

void bLength(Interpreter&, int, Out& out, Args in) {
  checkArgs("length", in, 1, 1);
  const ops::Dims d = ops::dimsOf(in[0].get());
  vxSize m = 0;
  if (!vxIsEmpty(in[0].get()))
    for (vxSize x : d) m = std::max(m, x);
  out.push_back(Value::scalar(static_cast<double>(m)));
}

void bNdims(Interpreter&, int, Out& out, Args in) {
  checkArgs("ndims", in, 1, 1);
  out.push_back(Value::scalar(static_cast<double>(vxGetNumberOfDimensions(in[0].get()))));
}

void bIsempty(Interpreter&, int, Out& out, Args in) {
  checkArgs("isempty", in, 1, 1);
  out.push_back(Value::logical(vxIsEmpty(in[0].get())));
}

// zeros/ones with an optional trailing class name.
Value filled(const char* fn, Args in, double value) {
  vxClassID cls = vxDOUBLE_CLASS;
  if (!in.empty() && vxIsChar(in.back().get())) {
    const std::string name = textArg(fn, in.back());
    static const std::pair<const char*, vxClassID> kClasses[] = {
        {"double", vxDOUBLE_CLASS}, {"single", vxSINGLE_CLASS}, {"logical", vxLOGICAL_CLASS},
        {"int8", vxINT8_CLASS},     {"uint8", vxUINT8_CLASS},   {"int16", vxINT16_CLASS},
        {"uint16", vxUINT16_CLASS}, {"int32", vxINT32_CLASS},   {"uint32", vxUINT32_CLASS},
        {"int64", vxINT64_CLASS},   {"uint64", vxUINT64_CLASS}};
    cls = vxUNKNOWN_CLASS;
    for (const auto& [n, c] : kClasses)
      if (name == n) cls = c;
    if (cls == vxUNKNOWN_CLASS) throw Error("VANTEL:sgsh:UnknownClass", name);
    in = in.first(in.size() - 1);
  }
  const ops::Dims d = dimsArgs(fn, in);
  Value v = ops::makeArray(vxDOUBLE_CLASS, d);
  if (value != 0) {
    double* p = vxGetPr(v.mut());
    for (vxSize i = 0; i < ops::countOf(d); ++i) p[i] = value;
  }
  return cls == vxDOUBLE_CLASS ? std::move(v) : ops::convertTo(v.get(), cls, false);
}

void bZeros(Interpreter&, int, Out& out, Args in) { out.push_back(filled("zeros", in, 0)); }
void bOnes(Interpreter&, int, Out& out, Args in) { out.push_back(filled("ones", in, 1)); }
void bNaN(Interpreter&, int, Out& out, Args in) {
  out.push_back(filled("NaN", in, std::numeric_limits<double>::quiet_NaN()));
}
void bInf(Interpreter&, int, Out& out, Args in) { out.push_back(filled("Inf", in, HUGE_VAL)); }

void bTrue(Interpreter&, int, Out& out, Args in) {
  out.push_back(ops::convertTo(filled("true", in, 1).get(), vxLOGICAL_CLASS, false));
}
void bFalse(Interpreter&, int, Out& out, Args in) {
  out.push_back(ops::convertTo(filled("false", in, 0).get(), vxLOGICAL_CLASS, false));
}
void bPi(Interpreter&, int, Out& out, Args in) {
  checkArgs("pi", in, 0, 0);
  out.push_back(Value::scalar(3.14159265358979323846));
}
void bEps(Interpreter&, int, Out& out, Args in) {
  checkArgs("eps", in, 0, 0);
  out.push_back(Value::scalar(std::numeric_limits<double>::epsilon()));
}

void bClass(Interpreter&, int, Out& out, Args in) {
  checkArgs("class", in, 1, 1);
  out.push_back(Value::text(vxGetClassName(in[0].get())));
}

bool isaCategory(const vxArray* a, const std::string& name) {
  const vxClassID c = vxGetClassID(a);
  if (name == "numeric") return c >= vxDOUBLE_CLASS && c <= vxUINT64_CLASS;
  if (name == "float") return c == vxDOUBLE_CLASS || c == vxSINGLE_CLASS;
  if (name == "integer") return c >= vxINT8_CLASS && c <= vxUINT64_CLASS;
  return vxIsA(a, name.c_str());
}

void bIsa(Interpreter&, int, Out& out, Args in) {
  checkArgs("isa", in, 2, 2);
  out.push_back(Value::logical(isaCategory(in[0].get(), textArg("isa", in[1]))));
}

template <bool (*Test)(const vxArray*)>
void classTest(Interpreter&, int, Out& out, Args in) {
  checkArgs("is*", in, 1, 1);
  out.push_back(Value::logical(Test(in[0].get())));
}

bool isNumericTest(const vxArray* a) { return vxIsNumeric(a); }
bool isCharTest(const vxArray* a) { return vxIsChar(a); }
bool isCellTest(const vxArray* a) { return vxIsCell(a); }
bool isStructTest(const vxArray* a) { return vxIsStruct(a); }
bool isLogicalTest(const vxArray* a) { return vxIsLogical(a); }
bool isStringTest(const vxArray* a) { return vxIsString(a); }
bool isScalarTest(const vxArray* a) { return vxGetNumberOfElements(a) == 1; }
bool isVectorTest(const vxArray* a) { return vxIsVector(a); }
bool isRealTest(const vxArray* a) { return !vxIsComplex(a); }
bool isHandleTest(const vxArray* a) { return vxIsFunctionHandle(a); }
bool isCellstrTest(const vxArray* a) { return isCellOfText(a); }

void bIsfield(Interpreter&, int, Out& out, Args in) {
  checkArgs("isfield", in, 2, 2);
  const vxArray* s = in[0].get();
  auto has = [&](const vxArray* name) {
    if (!vxIsStruct(s) || !ops::isText(name)) return false;
    const std::string text = ops::textOf(name);  // a name with a NUL is no field's
    return text.find('\0') == std::string::npos && vxGetFieldNumber(s, text.c_str()) >= 0;
  };
  if (vxIsCell(in[1].get())) {
    const vxArray* c = in[1].get();
    std::vector<bool> r(vxGetNumberOfElements(c));
    for (vxSize i = 0; i < r.size(); ++i) r[i] = vxGetCell(c, i) && has(vxGetCell(c, i));
    out.push_back(ops::logicals(ops::dimsOf(c), r));
    return;
  }
  out.push_back(Value::logical(has(in[1].get())));
}

void bFieldnames(Interpreter&, int, Out& out, Args in) {
  checkArgs("fieldnames", in, 1, 1);
  if (!vxIsStruct(in[0].get())) throw Error("VANTEL:sgsh:NotStruct", "fieldnames");
  const std::vector<std::string> names = ops::fieldNames(in[0].get());
  Value c(vxCreateCellMatrix(names.size(), 1));
  for (std::size_t i = 0; i < names.size(); ++i) vxSetCell(c.mut(), i, Value::text(names[i]).release());
  out.push_back(std::move(c));
}

void bRmfield(Interpreter&, int, Out& out, Args in) {
  checkArgs("rmfield", in, 2, 2);
  if (!vxIsStruct(in[0].get())) throw Error("VANTEL:sgsh:NotStruct", "rmfield");
  Value s = in[0];
  const std::string name = ops::checkedName(textArg("rmfield", in[1]));
  const int f = vxGetFieldNumber(s.get(), name.c_str());
  if (f < 0) throw Error("VANTEL:sgsh:NoSuchField", name);
  vxRemoveField(s.mut(), f);
  out.push_back(std::move(s));
}

// struct('a', 1, 'b', {2, 3}): cell values make a struct array.
void bStruct(Interpreter&, int, Out& out, Args in) {
  if (in.size() % 2) throw Error("VANTEL:sgsh:NameValuePairs", "struct");
  ops::Dims dims{1, 1};
  for (std::size_t i = 1; i < in.size(); i += 2)
    if (vxIsCell(in[i].get()) && vxGetNumberOfElements(in[i].get()) != 1) dims = ops::dimsOf(in[i].get());
  std::vector<std::string> names;
  for (std::size_t i = 0; i < in.size(); i += 2) {
    names.push_back(ops::checkedName(textArg("struct", in[i])));
    // One field per name: a repeated one would leave a value without a field.
    if (std::find(names.begin(), names.end() - 1, names.back()) != names.end() - 1)
      throw Error("VANTEL:sgsh:DuplicateField", names.back());
  }
  std::vector<const char*> ptrs;
  for (const std::string& n : names) ptrs.push_back(n.c_str());
  Value s(vxCreateStructArray(dims.size(), dims.data(), static_cast<int>(ptrs.size()), ptrs.data()));
  const vxSize n = ops::countOf(dims);
  for (std::size_t f = 0; f < names.size(); ++f) {
    const vxArray* v = in[2 * f + 1].get();
    for (vxSize k = 0; k < n; ++k) {
      const vxArray* el = v;
      if (vxIsCell(v)) {
        if (vxGetNumberOfElements(v) == 1) el = vxGetCell(v, 0);
        else if (vxGetNumberOfElements(v) == n) el = vxGetCell(v, k);
        else throw Error("VANTEL:sgsh:StructCellSize");
      }
      vxSetFieldByNumber(s.mut(), k, static_cast<int>(f),
                         el ? vxCreateSharedDataCopy(el) : vxCreateDoubleMatrix(0, 0, vxREAL));
    }
  }
  out.push_back(std::move(s));
}

void bCell(Interpreter&, int, Out& out, Args in) {
  const ops::Dims d = dimsArgs("cell", in);
  Value c = ops::makeArray(vxCELL_CLASS, d);
  for (vxSize i = 0; i < ops::countOf(d); ++i) vxSetCell(c.mut(), i, vxCreateDoubleMatrix(0, 0, vxREAL));
  out.push_back(std::move(c));
}

template <vxClassID Cls>
void convert(Interpreter&, int, Out& out, Args in) {
  checkArgs(Cls == vxDOUBLE_CLASS ? "double" : Cls == vxLOGICAL_CLASS ? "logical" : "conversion", in, 1, 1);
  const vxArray* a = in[0].get();
  if (Cls == vxDOUBLE_CLASS && vxIsString(a)) {
    // double("3.5") reads the text as a number.
    Value r = ops::makeArray(vxDOUBLE_CLASS, ops::dimsOf(a));
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) {
      const std::string t = ops::textOfElement(a, i);
      char* end = nullptr;
      const double v = std::strtod(t.c_str(), &end);
      vxGetPr(r.mut())[i] = end && *end == '\0' && !t.empty() ? v : std::numeric_limits<double>::quiet_NaN();
    }
    out.push_back(std::move(r));
    return;
  }
  out.push_back(ops::convertTo(a, Cls, Cls == vxDOUBLE_CLASS && vxIsComplex(a)));
}

void bChar(Interpreter&, int, Out& out, Args in) {
  checkArgs("char", in, 1, 1);
  const vxArray* a = in[0].get();
  if (vxIsString(a) && vxGetNumberOfElements(a) == 1) {
    out.push_back(Value::text(ops::textOfElement(a, 0)));
    return;
  }
  if (vxIsCell(a)) {
    // Rows padded with blanks to the longest.
    std::vector<std::u16string> rows;
    std::size_t w = 0;
    for (vxSize i = 0; i < vxGetNumberOfElements(a); ++i) {
      rows.push_back(matrix::get_ustring(vxGetCell(a, i)));
      w = std::max(w, rows.back().size());
    }
    Value r = ops::makeArray(vxCHAR_CLASS, {rows.size(), w});
    for (std::size_t i = 0; i < rows.size(); ++i)
      for (std::size_t j = 0; j < w; ++j) vxGetChars(r.mut())[i + j * rows.size()] = j < rows[i].size() ? rows[i][j] : u' ';
    out.push_back(std::move(r));
    return;
  }
  out.push_back(ops::convertTo(a, vxCHAR_CLASS, false));
}

void bString(Interpreter&, int, Out& out, Args in) {
  checkArgs("string", in, 1, 1);
  std::vector<Value> one{in[0], Value(vxCreateStringArray(1, 1))};
  // Concatenation does the conversion; keep just the first element.
  Value joined = ops::concat(one, true);
  out.push_back(ops::gather(joined.get(), std::vector<vxIndex>{0}, {1, 1}));
}

void bIsequal(Interpreter&, int, Out& out, Args in) {
  if (in.size() < 2) throw Error("VANTEL:sgsh:NotEnoughInputs", "isequal");
  bool eq = true;
  for (std::size_t i = 1; i < in.size() && eq; ++i) {
    const vxArray *a = in[0].get(), *b = in[i].get();
    if (ops::isNumberLike(a) && ops::isNumberLike(b)) {
      // Numbers compare by value across classes.
      eq = ops::dimsOf(a) == ops::dimsOf(b);
      for (vxSize k = 0; eq && k < vxGetNumberOfElements(a); ++k) eq = ops::complexAt(a, k) == ops::complexAt(b, k);
    } else {
      eq = vxAreMatricesEqualNanOptional(a, b, false);
    }
  }
  out.push_back(Value::logical(eq));
}

void bReshape(Interpreter&, int, Out& out, Args in) {
  if (in.size() < 2) throw Error("VANTEL:sgsh:NotEnoughInputs", "reshape");
  const ops::Dims d = dimsArgs("reshape", in.subspan(1));
  if (ops::countOf(d) != vxGetNumberOfElements(in[0].get())) throw Error("VANTEL:sgsh:ReshapeCount");
  out.push_back(ops::reshaped(in[0].get(), d));
}

void bRepmat(Interpreter&, int, Out& out, Args in) {
  if (in.size() < 2) throw Error("VANTEL:sgsh:NotEnoughInputs", "repmat");
  const ops::Dims reps = dimsArgs("repmat", in.subspan(1));
  const vxArray* a = in[0].get();
  const ops::Dims d = ops::dimsOf(a);
  if (d.size() > 2 || reps.size() > 2) throw Error("VANTEL:sgsh:ConcatND");
  const vxSize m = d[0], n = d[1], R = reps[0], C = reps[1];
  ops::checkedCount({m, R, n, C}, "repmat");  // before the positions are listed
  std::vector<vxIndex> pos;
  for (vxSize j = 0; j < n * C; ++j)
    for (vxSize i = 0; i < m * R; ++i) pos.push_back((i % m) + (j % n) * m);
  out.push_back(ops::gather(a, pos, {m * R, n * C}));
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerCoreBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bDisp>("disp");
  r.add<bFormat>("format");
  r.add<bNumel>("numel");
  r.add<bSize>("size");
  r.add<bLength>("length");
  r.add<bNdims>("ndims");
  r.add<bIsempty>("isempty");
  r.add<bZeros>("zeros");
  r.add<bOnes>("ones");
  r.add<bNaN>("NaN");
  r.add<bNaN>("nan");
  r.add<bInf>("Inf");
  r.add<bInf>("inf");
  r.add<bTrue>("true");
  r.add<bFalse>("false");
  r.add<bPi>("pi");
  r.add<bEps>("eps");
  r.add<bClass>("class");
  r.add<bIsa>("isa");
  r.add<classTest<isNumericTest>>("isnumeric");
  r.add<classTest<isCharTest>>("ischar");
  r.add<classTest<isCellTest>>("iscell");
  r.add<classTest<isStructTest>>("isstruct");
  r.add<classTest<isLogicalTest>>("islogical");
  r.add<classTest<isStringTest>>("isstring");
  r.add<classTest<isScalarTest>>("isscalar");
  r.add<classTest<isVectorTest>>("isvector");
  r.add<classTest<isRealTest>>("isreal");
  r.add<classTest<isHandleTest>>("is_function_handle");
  r.add<classTest<isCellstrTest>>("iscellstr");
  r.add<bIsfield>("isfield");
  r.add<bFieldnames>("fieldnames");
  r.add<bRmfield>("rmfield");
  r.add<bStruct>("struct");
  r.add<bCell>("cell");
  r.add<convert<vxDOUBLE_CLASS>>("double");
  r.add<convert<vxLOGICAL_CLASS>>("logical");
  r.add<convert<vxINT32_CLASS>>("int32");
  r.add<convert<vxUINT8_CLASS>>("uint8");
  r.add<convert<vxINT8_CLASS>>("int8");
  r.add<convert<vxINT16_CLASS>>("int16");
  r.add<convert<vxUINT16_CLASS>>("uint16");
  r.add<convert<vxUINT32_CLASS>>("uint32");
  r.add<convert<vxINT64_CLASS>>("int64");
  r.add<convert<vxUINT64_CLASS>>("uint64");
  r.add<convert<vxSINGLE_CLASS>>("single");
  r.add<bChar>("char");
  r.add<bString>("string");
  r.add<bIsequal>("isequal");
  r.add<bReshape>("reshape");
  r.add<bRepmat>("repmat");
}

}  // namespace sgsh
