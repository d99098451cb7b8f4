// Numeric built-ins: element-wise functions, reductions along the first
// non-singleton dimension, find, and a few constructors of number rows.
#include <algorithm>
#include <cmath>
#include <complex>

#include "builtins/BuiltinSupport.h"

namespace sgsh::builtins {
namespace {

using cplx = std::complex<double>;

const vxArray* numbersArg(const Value& v) {
  if (!ops::isNumberLike(v.get())) throw Error("VANTEL:sgsh:NotNumeric", vxGetClassName(v.get()));
  return v.get();
}

// An element-wise function of real numbers; complex input uses the complex form.
template <double (*F)(double), cplx (*C)(const cplx&)>
void elementwise(Interpreter&, int, Out& out, Args in) {
  checkArgs("math", in, 1, 1);
  const vxArray* a = numbersArg(in[0]);
  const vxSize n = vxGetNumberOfElements(a);
  bool needComplex = vxIsComplex(a);
  if (C && !needComplex) {
    // sqrt and log of negative numbers are complex.
    for (vxSize i = 0; i < n && !needComplex; ++i) needComplex = std::isnan(F(ops::realAt(a, i))) && !std::isnan(ops::realAt(a, i));
  }
  if (needComplex && C) {
    std::vector<cplx> r(n);
    for (vxSize i = 0; i < n; ++i) r[i] = C(ops::complexAt(a, i));
    out.push_back(ops::complexes(ops::dimsOf(a), r));
    return;
  }
  std::vector<double> r(n);
  for (vxSize i = 0; i < n; ++i) r[i] = F(ops::realAt(a, i));
  out.push_back(ops::doubles(ops::dimsOf(a), r));
}

double dsqrt(double x) { return std::sqrt(x); }
cplx csqrt(const cplx& x) { return std::sqrt(x); }
double dexp(double x) { return std::exp(x); }
cplx cexp(const cplx& x) { return std::exp(x); }
double dlog(double x) { return std::log(x); }
cplx clog(const cplx& x) { return std::log(x); }
double dlog10(double x) { return std::log10(x); }
double dsin(double x) { return std::sin(x); }
double dcos(double x) { return std::cos(x); }
double dtan(double x) { return std::tan(x); }
double dfloor(double x) { return std::floor(x); }
double dceil(double x) { return std::ceil(x); }
double dround(double x) { return std::round(x); }
double dfix(double x) { return std::trunc(x); }
double dsign(double x) { return x > 0 ? 1 : x < 0 ? -1 : x; }

// A result computed in doubles, back in the integer class of the input it
// came from (saturated: abs(int8(-128)) is 127); other inputs give doubles.
Value keepInteger(Value r, const vxArray* from) {
  const vxClassID c = vxGetClassID(from);
  if (c < vxINT8_CLASS || c > vxUINT64_CLASS) return r;
  return ops::convertTo(r.get(), c, false);
}

void bAbs(Interpreter&, int, Out& out, Args in) {
  checkArgs("abs", in, 1, 1);
  const vxArray* a = numbersArg(in[0]);
  std::vector<double> r(vxGetNumberOfElements(a));
  for (vxSize i = 0; i < r.size(); ++i) r[i] = std::abs(ops::complexAt(a, i));
  out.push_back(keepInteger(ops::doubles(ops::dimsOf(a), r), a));
}

template <int Part>  // 0 real, 1 imag, 2 conj
void complexPart(Interpreter&, int, Out& out, Args in) {
  checkArgs("real", in, 1, 1);
  const vxArray* a = numbersArg(in[0]);
  const vxSize n = vxGetNumberOfElements(a);
  std::vector<cplx> r(n);
  for (vxSize i = 0; i < n; ++i) {
    const cplx c = ops::complexAt(a, i);
    r[i] = Part == 0 ? cplx(c.real()) : Part == 1 ? cplx(c.imag()) : std::conj(c);
  }
  out.push_back(ops::complexes(ops::dimsOf(a), r));
}

// mod and rem over two arrays with scalar expansion.
template <bool Mod>
void modRem(Interpreter&, int, Out& out, Args in) {
  checkArgs(Mod ? "mod" : "rem", in, 2, 2);
  const vxArray *a = numbersArg(in[0]), *b = numbersArg(in[1]);
  const vxSize na = vxGetNumberOfElements(a), nb = vxGetNumberOfElements(b);
  if (na != nb && na != 1 && nb != 1) throw Error("VANTEL:sgsh:SizeMismatch", Mod ? "mod" : "rem", ops::sizeText(a), ops::sizeText(b));
  // A scalar pairs with each element of the other, none when that is empty.
  const vxSize n = na == 1 ? nb : na;
  std::vector<double> r(n);
  for (vxSize i = 0; i < n; ++i) {
    const double x = ops::realAt(a, na == 1 ? 0 : i), y = ops::realAt(b, nb == 1 ? 0 : i);
    if (y == 0) { r[i] = Mod ? x : std::nan(""); continue; }
    const double q = Mod ? std::floor(x / y) : std::trunc(x / y);
    r[i] = x - q * y;
  }
  out.push_back(ops::doubles(ops::dimsOf(na == 1 ? b : a), r));
}

// The dimension a reduction runs along: the given one, else the first
// that is not 1.
std::size_t reductionDim(const ops::Dims& d, Args in) {
  if (in.size() >= 2) {
    const double k = scalarArg("reduction", in[1]);
    if (!(k >= 1) || k != std::floor(k)) throw Error("VANTEL:sgsh:BadDimension", "reduction");
    return ops::positionFrom(k);
  }
  for (std::size_t k = 0; k < d.size(); ++k)
    if (d[k] != 1) return k;
  return 0;
}

enum class Reduce { Sum, Prod, Any, All, Max, Min };

Value reduce(const vxArray* a, Reduce kind, Args in, Value* where = nullptr) {
  ops::Dims d = ops::dimsOf(a);
  if (vxIsEmpty(a) && d.size() == 2 && d[0] == 0 && d[1] == 0) {
    // Reductions of [] give the identity, or [] for max and min.
    if (kind == Reduce::Max || kind == Reduce::Min) return Value::emptyDouble();
    if (kind == Reduce::Any) return Value::logical(false);
    if (kind == Reduce::All) return Value::logical(true);
    return Value::scalar(kind == Reduce::Sum ? 0 : 1);
  }
  const std::size_t k = reductionDim(d, in);
  // A dimension past the last is a singleton: the dimension list is not
  // grown to reach it (sum(x, 1e8) would otherwise build 1e8 entries).
  vxSize below = 1, above = 1;
  for (std::size_t j = 0; j < k && j < d.size(); ++j) below *= d[j];
  for (std::size_t j = k + 1; j < d.size(); ++j) above *= d[j];
  const vxSize len = k < d.size() ? d[k] : 1;
  ops::Dims od = d;
  if (k < d.size()) od[k] = len == 0 && (kind == Reduce::Max || kind == Reduce::Min) ? 0 : 1;
  const vxSize n = below * above;
  std::vector<cplx> res(n);
  std::vector<double> idx(n, 1);
  const bool complex = vxIsComplex(a);
  for (vxSize hi = 0; hi < above; ++hi)
    for (vxSize lo = 0; lo < below; ++lo) {
      cplx acc = kind == Reduce::Prod || kind == Reduce::All ? 1 : 0;
      bool first = true;
      for (vxSize t = 0; t < len; ++t) {
        const vxIndex i = lo + t * below + hi * below * len;
        const cplx v = ops::complexAt(a, i);
        switch (kind) {
          case Reduce::Sum: acc += v; break;
          case Reduce::Prod: acc *= v; break;
          case Reduce::Any: if (v != cplx(0) && !std::isnan(v.real())) acc = 1; break;
          case Reduce::All: if (v == cplx(0)) acc = 0; break;
          case Reduce::Max:
          case Reduce::Min: {
            if (std::isnan(v.real())) break;
            const double key = complex ? std::abs(v) : v.real(), cur = complex ? std::abs(acc) : acc.real();
            if (first || (kind == Reduce::Max ? key > cur : key < cur)) {
              acc = v;
              idx[lo + hi * below] = static_cast<double>(t + 1);
              first = false;
            }
            break;
          }
        }
      }
      if ((kind == Reduce::Max || kind == Reduce::Min) && first) acc = std::nan("");
      res[lo + hi * below] = acc;
    }
  if (kind == Reduce::Any || kind == Reduce::All) {
    std::vector<bool> b(n);
    for (vxSize i = 0; i < n; ++i) b[i] = res[i] != cplx(0);
    return ops::logicals(od, b);
  }
  if (where) *where = ops::doubles(od, idx);
  return ops::complexes(od, res);
}

template <Reduce Kind>
void reduction(Interpreter&, int, Out& out, Args in) {
  checkArgs("reduction", in, 1, 2);
  const vxArray* a = numbersArg(in[0]);
  Value r = reduce(a, Kind, in);
  out.push_back(Kind == Reduce::Any || Kind == Reduce::All ? std::move(r) : keepInteger(std::move(r), a));
}

// max(a), [m, i] = max(a), max(a, b)
template <Reduce Kind>
void extremum(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs(Kind == Reduce::Max ? "max" : "min", in, 1, 3);
  if (in.size() >= 2 && !vxIsEmpty(in[1].get())) {
    const vxArray *a = numbersArg(in[0]), *b = numbersArg(in[1]);
    const vxSize na = vxGetNumberOfElements(a), nb = vxGetNumberOfElements(b);
    if (na != nb && na != 1 && nb != 1) throw Error("VANTEL:sgsh:SizeMismatch", "max", ops::sizeText(a), ops::sizeText(b));
    const vxSize n = na == 1 ? nb : na;  // a scalar and an empty array give an empty result
    std::vector<double> r(n);
    for (vxSize i = 0; i < n; ++i) {
      const double x = ops::realAt(a, na == 1 ? 0 : i), y = ops::realAt(b, nb == 1 ? 0 : i);
      r[i] = std::isnan(x) ? y : std::isnan(y) ? x : Kind == Reduce::Max ? std::max(x, y) : std::min(x, y);
    }
    const vxArray* from = ops::isNumberLike(a) && vxGetClassID(a) >= vxINT8_CLASS ? a : b;
    out.push_back(keepInteger(ops::doubles(ops::dimsOf(na == 1 ? b : a), r), from));
    return;
  }
  // max(a, [], dim) reduces along dim.
  Value where;
  std::vector<Value> dimArgs{in[0]};
  if (in.size() == 3) dimArgs.push_back(in[2]);
  const vxArray* a = numbersArg(in[0]);
  out.push_back(keepInteger(reduce(a, Kind, dimArgs, &where), a));
  if (nargout > 1) out.push_back(std::move(where));
}

void bFind(Interpreter&, int, Out& out, Args in) {
  checkArgs("find", in, 1, 2);
  const vxArray* a = numbersArg(in[0]);
  const vxSize n = vxGetNumberOfElements(a);
  const vxSize limit = in.size() == 2 ? ops::sizeFrom(scalarArg("find", in[1]), "find") : n;
  std::vector<double> r;
  for (vxSize i = 0; i < n && r.size() < limit; ++i)
    if (ops::complexAt(a, i) != cplx(0)) r.push_back(static_cast<double>(i + 1));
  const bool row = vxGetM(a) == 1 && vxGetNumberOfDimensions(a) == 2;
  out.push_back(ops::doubles(row ? ops::Dims{1, r.size()} : ops::Dims{r.size(), 1}, r));
}

void bCumsum(Interpreter&, int, Out& out, Args in) {
  checkArgs("cumsum", in, 1, 1);
  const vxArray* a = numbersArg(in[0]);
  const ops::Dims d = ops::dimsOf(a);
  const vxSize n = vxGetNumberOfElements(a);
  std::vector<double> r(n);
  if (vxIsVector(a)) {
    double s = 0;
    for (vxSize i = 0; i < n; ++i) r[i] = s += ops::realAt(a, i);
  } else {
    for (vxSize j = 0; j < n / std::max<vxSize>(d[0], 1); ++j) {
      double s = 0;
      for (vxSize i = 0; i < d[0]; ++i) r[i + j * d[0]] = s += ops::realAt(a, i + j * d[0]);
    }
  }
  out.push_back(ops::doubles(d, r));
}

void bLinspace(Interpreter&, int, Out& out, Args in) {
  checkArgs("linspace", in, 2, 3);
  const double a = scalarArg("linspace", in[0]), b = scalarArg("linspace", in[1]);
  const double nd = in.size() == 3 ? std::floor(scalarArg("linspace", in[2])) : 100;
  const vxSize n = ops::sizeFrom(nd, "linspace");
  ops::checkedCount({1, n}, "linspace");
  std::vector<double> r(n);
  for (vxSize i = 0; i < n; ++i) r[i] = n == 1 ? b : a + (b - a) * static_cast<double>(i) / static_cast<double>(n - 1);
  out.push_back(ops::doubles({1, n}, r));
}

void bSort(Interpreter&, int nargout, Out& out, Args in) {
  checkArgs("sort", in, 1, 2);
  const vxArray* a = numbersArg(in[0]);
  if (!vxIsVector(a) && !vxIsEmpty(a) && vxGetNumberOfElements(a) != 1) throw Error("VANTEL:sgsh:NotVector", "sort");
  const bool descend = in.size() == 2 && textArg("sort", in[1]) == "descend";
  const vxSize n = vxGetNumberOfElements(a);
  std::vector<vxIndex> order(n);
  for (vxSize i = 0; i < n; ++i) order[i] = i;
  // NaN sorts after every number going up (before them going down): a
  // strict order, which the sort needs to be defined at all.
  std::stable_sort(order.begin(), order.end(), [&](vxIndex x, vxIndex y) {
    const double vx = ops::realAt(a, x), vy = ops::realAt(a, y);
    const bool nx = std::isnan(vx), ny = std::isnan(vy);
    if (nx || ny) return descend ? nx && !ny : !nx && ny;
    return descend ? vx > vy : vx < vy;
  });
  out.push_back(ops::gather(a, order, ops::dimsOf(a)));
  if (nargout > 1) {
    std::vector<double> idx(n);
    for (vxSize i = 0; i < n; ++i) idx[i] = static_cast<double>(order[i] + 1);
    out.push_back(ops::doubles(ops::dimsOf(a), idx));
  }
}

}  // namespace
}  // namespace sgsh::builtins

namespace sgsh {

void registerMathBuiltins(BuiltinRegistry& r) {
  using namespace builtins;
  r.add<bAbs>("abs", "y = abs(x)",
              "The absolute value or magnitude.");
  r.add<elementwise<dsqrt, csqrt>>("sqrt", "y = sqrt(x)",
                                   "The square root; complex for negative numbers.");
  r.add<elementwise<dexp, cexp>>("exp", "y = exp(x)",
                                 "The exponential.");
  r.add<elementwise<dlog, clog>>("log", "y = log(x)",
                                 "The natural logarithm; complex for negative numbers.");
  r.add<elementwise<dlog10, nullptr>>("log10", "y = log10(x)",
                                      "The logarithm to base 10.");
  r.add<elementwise<dsin, nullptr>>("sin", "y = sin(x)",
                                    "The sine, in radians.");
  r.add<elementwise<dcos, nullptr>>("cos", "y = cos(x)",
                                    "The cosine, in radians.");
  r.add<elementwise<dtan, nullptr>>("tan", "y = tan(x)",
                                    "The tangent, in radians.");
  r.add<elementwise<dfloor, nullptr>>("floor", "y = floor(x)",
                                      "Rounds towards minus infinity.");
  r.add<elementwise<dceil, nullptr>>("ceil", "y = ceil(x)",
                                     "Rounds towards plus infinity.");
  r.add<elementwise<dround, nullptr>>("round", "y = round(x)",
                                      "Rounds to the nearest integer, halves away from zero.");
  r.add<elementwise<dfix, nullptr>>("fix", "y = fix(x)",
                                    "Rounds towards zero.");
  r.add<elementwise<dsign, nullptr>>("sign", "y = sign(x)",
                                     "-1, 0 or 1 by the sign of each element.");
  r.add<complexPart<0>>("real", "y = real(z)",
                        "The real part.");
  r.add<complexPart<1>>("imag", "y = imag(z)",
                        "The imaginary part.");
  r.add<complexPart<2>>("conj", "y = conj(z)",
                        "The complex conjugate.");
  r.add<modRem<true>>("mod", "r = mod(a, b)",
                      "The remainder after division, with the sign of the divisor.");
  r.add<modRem<false>>("rem", "r = rem(a, b)",
                       "The remainder after division, with the sign of the dividend.");
  r.add<reduction<Reduce::Sum>>("sum", "s = sum(x)\ns = sum(x, dim)",
                                "The sum along the first non-singleton dimension, or the one given.");
  r.add<reduction<Reduce::Prod>>("prod", "p = prod(x)\np = prod(x, dim)",
                                 "The product along the first non-singleton dimension, or the one given.");
  r.add<reduction<Reduce::Any>>("any", "tf = any(x)\ntf = any(x, dim)",
                                "True where any element is non-zero.");
  r.add<reduction<Reduce::All>>("all", "tf = all(x)\ntf = all(x, dim)",
                                "True where every element is non-zero.");
  r.add<extremum<Reduce::Max>>("max", "m = max(x)\n[m, i] = max(x)\nm = max(a, b)\nm = max(x, [], dim)",
                               "The largest elements, or the larger of two arrays.");
  r.add<extremum<Reduce::Min>>("min", "m = min(x)\n[m, i] = min(x)\nm = min(a, b)\nm = min(x, [], dim)",
                               "The smallest elements, or the smaller of two arrays.");
  r.add<bFind>("find", "k = find(x)\n[r, c] = find(x)",
               "The indices of the non-zero elements.");
  r.add<bCumsum>("cumsum", "c = cumsum(x)\nc = cumsum(x, dim)",
                 "The running sum.");
  r.add<bLinspace>("linspace", "y = linspace(a, b)\ny = linspace(a, b, n)",
                   "A row of n (100) evenly spaced points from a to b.");
  r.add<bSort>("sort", "y = sort(x)\n[y, i] = sort(x, dim, 'descend')",
               "Sorts elements in order; NaN last going up.");
}

}  // namespace sgsh
