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
  r.add<bDisp>("disp", "disp(x)",
               "Shows a value without its name.");
  r.add<bFormat>("format", "format\nformat long\nformat short",
                 "Sets how many digits numbers show with.");
  r.add<bNumel>("numel", "n = numel(x)",
                "The number of elements of an array.");
  r.add<bSize>("size", "sz = size(x)\nn = size(x, dim)\n[m, n] = size(x)",
               "The dimensions of an array.");
  r.add<bLength>("length", "n = length(x)",
                 "The largest dimension of an array, 0 when it is empty.");
  r.add<bNdims>("ndims", "n = ndims(x)",
                "The number of dimensions of an array.");
  r.add<bIsempty>("isempty", "tf = isempty(x)",
                  "True when an array has no elements.");
  r.add<bZeros>("zeros", "z = zeros(n)\nz = zeros(m, n, ...)",
                "An array of zeros.");
  r.add<bOnes>("ones", "z = ones(n)\nz = ones(m, n, ...)",
               "An array of ones.");
  r.add<bNaN>("NaN", "x = NaN\nx = NaN(m, n, ...)",
              "Not-a-Number, alone or as an array.");
  r.add<bNaN>("nan", "x = nan\nx = nan(m, n, ...)",
              "Not-a-Number, alone or as an array.");
  r.add<bInf>("Inf", "x = Inf\nx = Inf(m, n, ...)",
              "Positive infinity, alone or as an array.");
  r.add<bInf>("inf", "x = inf\nx = inf(m, n, ...)",
              "Positive infinity, alone or as an array.");
  r.add<bTrue>("true", "t = true\nt = true(m, n, ...)",
               "Logical true, alone or as an array.");
  r.add<bFalse>("false", "f = false\nf = false(m, n, ...)",
                "Logical false, alone or as an array.");
  r.add<bPi>("pi", "p = pi",
             "The ratio of a circle's circumference to its diameter.");
  r.add<bEps>("eps", "e = eps",
              "The distance from 1 to the next larger double.");
  r.add<bClass>("class", "c = class(x)",
                "The class name of a value.");
  r.add<bIsa>("isa", "tf = isa(x, className)",
              "True when a value is of the class, a subclass of it, or in the group named (numeric, float, integer).");
  r.add<classTest<isNumericTest>>("isnumeric", "tf = isnumeric(x)",
                                  "True for numeric arrays.");
  r.add<classTest<isCharTest>>("ischar", "tf = ischar(x)",
                               "True for char arrays.");
  r.add<classTest<isCellTest>>("iscell", "tf = iscell(x)",
                               "True for cell arrays.");
  r.add<classTest<isStructTest>>("isstruct", "tf = isstruct(x)",
                                 "True for struct arrays.");
  r.add<classTest<isLogicalTest>>("islogical", "tf = islogical(x)",
                                  "True for logical arrays.");
  r.add<classTest<isStringTest>>("isstring", "tf = isstring(x)",
                                 "True for string arrays.");
  r.add<classTest<isScalarTest>>("isscalar", "tf = isscalar(x)",
                                 "True for arrays of exactly one element.");
  r.add<classTest<isVectorTest>>("isvector", "tf = isvector(x)",
                                 "True for arrays of one row or one column.");
  r.add<classTest<isRealTest>>("isreal", "tf = isreal(x)",
                               "True for arrays without an imaginary part.");
  r.add<classTest<isHandleTest>>("is_function_handle", "tf = is_function_handle(x)",
                                 "True for function handles.");
  r.add<classTest<isCellstrTest>>("iscellstr", "tf = iscellstr(x)",
                                  "True for cell arrays whose elements are all char arrays.");
  r.add<bIsfield>("isfield", "tf = isfield(s, name)",
                  "True when a struct has the field; a cell of names gives one answer each.");
  r.add<bFieldnames>("fieldnames", "names = fieldnames(s)",
                     "The field names of a struct, or the public properties of an object, as a column cell.");
  r.add<bRmfield>("rmfield", "s = rmfield(s, name)",
                  "A struct without the named fields.");
  r.add<bStruct>("struct", "s = struct(name, value, ...)",
                 "A struct from name-value pairs; cell values make a struct array.");
  r.add<bCell>("cell", "c = cell(n)\nc = cell(m, n, ...)",
               "A cell array of empty elements.");
  r.add<convert<vxDOUBLE_CLASS>>("double", "y = double(x)",
                                 "Converts to double precision.");
  r.add<convert<vxLOGICAL_CLASS>>("logical", "y = logical(x)",
                                  "Converts to logical; NaN is refused.");
  r.add<convert<vxINT32_CLASS>>("int32", "y = int32(x)",
                                "Converts to 32-bit integers, rounding and saturating.");
  r.add<convert<vxUINT8_CLASS>>("uint8", "y = uint8(x)",
                                "Converts to unsigned 8-bit integers, rounding and saturating.");
  r.add<convert<vxINT8_CLASS>>("int8", "y = int8(x)",
                               "Converts to 8-bit integers, rounding and saturating.");
  r.add<convert<vxINT16_CLASS>>("int16", "y = int16(x)",
                                "Converts to 16-bit integers, rounding and saturating.");
  r.add<convert<vxUINT16_CLASS>>("uint16", "y = uint16(x)",
                                 "Converts to unsigned 16-bit integers, rounding and saturating.");
  r.add<convert<vxUINT32_CLASS>>("uint32", "y = uint32(x)",
                                 "Converts to unsigned 32-bit integers, rounding and saturating.");
  r.add<convert<vxINT64_CLASS>>("int64", "y = int64(x)",
                                "Converts to 64-bit integers, rounding and saturating.");
  r.add<convert<vxUINT64_CLASS>>("uint64", "y = uint64(x)",
                                 "Converts to unsigned 64-bit integers, rounding and saturating.");
  r.add<convert<vxSINGLE_CLASS>>("single", "y = single(x)",
                                 "Converts to single precision.");
  r.add<bChar>("char", "c = char(x)\nc = char(a, b, ...)",
               "Converts to characters; several texts become the rows of a padded char matrix.");
  r.add<bString>("string", "s = string(x)",
                 "Converts text, cells of text or numbers to a string array.");
  r.add<bIsequal>("isequal", "tf = isequal(a, b, ...)",
                  "True when all values have the same size and contents.");
  r.add<bReshape>("reshape", "y = reshape(x, m, n, ...)\ny = reshape(x, sz)",
                  "The same elements in a new shape; [] stands for the dimension that fits.");
  r.add<bRepmat>("repmat", "y = repmat(x, m, n)\ny = repmat(x, sz)",
                 "Tiles copies of an array.");
}

}  // namespace sgsh
