// Operators over arrays. Number-like operands (double, single, integers,
// logical, char) compute in double or complex double; comparisons and
// logical operators give logical arrays; string arrays support + (joining)
// and the comparisons. Scalars take a fast path without element loops.
#include "eval/Operators.h"

#include <cmath>
#include <complex>

#include <foundation/core/except/Error.h>

#include "eval/ArrayOps.h"
#include "foundation/text/Utf.h"

namespace sgsh::ops {

using foundation::core::except::Error;
using cplx = std::complex<double>;

namespace {

bool isComparison(Op op) {
  return op == Op::Eq || op == Op::Ne || op == Op::Lt || op == Op::Le || op == Op::Gt || op == Op::Ge;
}
bool isLogicalOp(Op op) { return op == Op::And || op == Op::Or; }

double applyReal(Op op, double x, double y) {
  switch (op) {
    case Op::Add: return x + y;
    case Op::Sub: return x - y;
    case Op::MatMul:
    case Op::Mul: return x * y;
    case Op::MatDiv:
    case Op::Div: return x / y;
    case Op::MatLeftDiv:
    case Op::LeftDiv: return y / x;
    case Op::MatPow:
    case Op::Pow: return std::pow(x, y);
    case Op::Eq: return x == y;
    case Op::Ne: return x != y;
    case Op::Lt: return x < y;
    case Op::Le: return x <= y;
    case Op::Gt: return x > y;
    case Op::Ge: return x >= y;
    case Op::And: return x != 0 && y != 0;
    case Op::Or: return x != 0 || y != 0;
    case Op::AndAnd:
    case Op::OrOr:
    case Op::Neg:
    case Op::Plus:
    case Op::Not:
    case Op::CTranspose:
    case Op::Transpose:
      break;
  }
  return 0;
}

cplx applyComplex(Op op, cplx x, cplx y) {
  switch (op) {
    case Op::Add: return x + y;
    case Op::Sub: return x - y;
    case Op::MatMul:
    case Op::Mul: return x * y;
    case Op::MatDiv:
    case Op::Div: return x / y;
    case Op::MatLeftDiv:
    case Op::LeftDiv: return y / x;
    case Op::MatPow:
    case Op::Pow:
      if (y.imag() == 0 && y.real() == std::round(y.real()) && std::abs(y.real()) < 64) {
        // Integer powers by repeated products keep exact results exact: (1i)^2 is -1.
        cplx r = 1;
        for (int k = 0; k < std::abs(static_cast<int>(y.real())); ++k) r *= x;
        return y.real() < 0 ? cplx(1) / r : r;
      }
      return std::pow(x, y);
    case Op::Eq: return x == y;
    case Op::Ne: return x != y;
    // Ordering compares real parts.
    case Op::Lt: return x.real() < y.real();
    case Op::Le: return x.real() <= y.real();
    case Op::Gt: return x.real() > y.real();
    case Op::Ge: return x.real() >= y.real();
    case Op::And: return x != cplx(0) && y != cplx(0);
    case Op::Or: return x != cplx(0) || y != cplx(0);
    case Op::AndAnd:
    case Op::OrOr:
    case Op::Neg:
    case Op::Plus:
    case Op::Not:
    case Op::CTranspose:
    case Op::Transpose:
      break;
  }
  return 0;
}

[[noreturn]] void badOperands(Op op, const vxArray* a, const vxArray* b) {
  std::string types = classNameOf(a);
  if (b) types += std::string(" and ") + classNameOf(b);
  throw Error("VANTEL:sgsh:BadOperand", opText(op), types);
}

// Output dimensions under implicit expansion.
Dims broadcastDims(const Dims& da, const Dims& db, Op op, const vxArray* a, const vxArray* b) {
  const std::size_t n = std::max(da.size(), db.size());
  Dims out(n);
  for (std::size_t k = 0; k < n; ++k) {
    const vxSize x = k < da.size() ? da[k] : 1, y = k < db.size() ? db[k] : 1;
    if (x == y) out[k] = x;
    else if (x == 1) out[k] = y;
    else if (y == 1) out[k] = x;
    else throw Error("VANTEL:sgsh:SizeMismatch", opText(op), sizeText(a), sizeText(b));
  }
  return out;
}

// For each output element, the linear positions in a and b.
void broadcastWalk(const Dims& out, const Dims& da, const Dims& db, std::vector<vxIndex>& ia,
                   std::vector<vxIndex>& ib) {
  const vxSize n = countOf(out);
  ia.resize(n);
  ib.resize(n);
  std::vector<vxIndex> subs(out.size(), 0);
  for (vxIndex i = 0; i < n; ++i) {
    vxIndex la = 0, lb = 0, sa = 1, sb = 1;
    for (std::size_t k = 0; k < out.size(); ++k) {
      const vxSize xa = k < da.size() ? da[k] : 1, xb = k < db.size() ? db[k] : 1;
      la += (xa == 1 ? 0 : subs[k]) * sa;
      lb += (xb == 1 ? 0 : subs[k]) * sb;
      sa *= xa;
      sb *= xb;
    }
    ia[i] = la;
    ib[i] = lb;
    for (std::size_t k = 0; k < out.size(); ++k) {
      if (++subs[k] < out[k]) break;
      subs[k] = 0;
    }
  }
}

bool needsComplexPow(Op op, const vxArray* a, const vxArray* b) {
  if (op != Op::Pow && op != Op::MatPow) return false;
  const vxSize na = vxGetNumberOfElements(a), nb = vxGetNumberOfElements(b);
  bool negBase = false, fracExp = false;
  for (vxSize i = 0; i < na && !negBase; ++i) negBase = realAt(a, i) < 0;
  for (vxSize i = 0; i < nb && !fracExp; ++i) {
    const double e = realAt(b, i);
    fracExp = e != std::round(e);
  }
  return negBase && fracExp;
}

Value stringOp(Op op, const vxArray* a, const vxArray* b) {
  auto textAt = [](const vxArray* x, vxIndex i) -> std::string {
    if (vxIsString(x)) return textOfElement(x, i);
    if (isNumberLike(x) && !vxIsChar(x) && vxGetNumberOfElements(x) == 1) return numberAsText(realAt(x, 0));
    return textOf(x);
  };
  const bool aStr = vxIsString(a), bStr = vxIsString(b);
  const Dims da = aStr ? dimsOf(a) : Dims{1, 1}, db = bStr ? dimsOf(b) : Dims{1, 1};
  const Dims out = broadcastDims(da, db, op, a, b);
  std::vector<vxIndex> ia, ib;
  broadcastWalk(out, da, db, ia, ib);
  if (op == Op::Add) {
    Value r = makeArray(vxSTRING_CLASS, out);
    for (std::size_t i = 0; i < ia.size(); ++i)
      vxSetStringElement(r.mut(), i, foundation::text::utf8ToUtf16(textAt(a, aStr ? ia[i] : 0) + textAt(b, bStr ? ib[i] : 0)));
    return r;
  }
  if (!isComparison(op)) badOperands(op, a, b);
  std::vector<bool> res(ia.size());
  for (std::size_t i = 0; i < ia.size(); ++i) {
    const int c = textAt(a, aStr ? ia[i] : 0).compare(textAt(b, bStr ? ib[i] : 0));
    res[i] = applyReal(op, c, 0) != 0;
  }
  return logicals(out, res);
}

Value matMul(const vxArray* a, const vxArray* b) {
  const Dims da = dimsOf(a), db = dimsOf(b);
  if (da.size() > 2 || db.size() > 2) throw Error("VANTEL:sgsh:NotMatrix", "*");
  if (da[1] != db[0]) throw Error("VANTEL:sgsh:InnerDimensions", sizeText(da), sizeText(db));
  const vxSize m = da[0], k = da[1], n = db[1];
  if (vxIsComplex(a) || vxIsComplex(b)) {
    std::vector<cplx> r(m * n);
    for (vxSize j = 0; j < n; ++j)
      for (vxSize p = 0; p < k; ++p) {
        const cplx bv = complexAt(b, p + j * k);
        for (vxSize i = 0; i < m; ++i) r[i + j * m] += complexAt(a, i + p * m) * bv;
      }
    return complexes({m, n}, r);
  }
  std::vector<double> r(m * n, 0.0);
  for (vxSize j = 0; j < n; ++j)
    for (vxSize p = 0; p < k; ++p) {
      const double bv = realAt(b, p + j * k);
      for (vxSize i = 0; i < m; ++i) r[i + j * m] += realAt(a, i + p * m) * bv;
    }
  return doubles({m, n}, r);
}

// a \ b for a square real a, by Gaussian elimination with partial pivoting.
Value solve(const vxArray* a, const vxArray* b) {
  const Dims da = dimsOf(a), db = dimsOf(b);
  if (da.size() > 2 || db.size() > 2 || da[0] != da[1]) throw Error("VANTEL:sgsh:NotSquare", sizeText(da));
  if (db[0] != da[0]) throw Error("VANTEL:sgsh:InnerDimensions", sizeText(da), sizeText(db));
  if (vxIsComplex(a) || vxIsComplex(b)) badOperands(Op::MatLeftDiv, a, b);
  const vxSize n = da[0], m = db[1];
  std::vector<double> A(n * n), B(n * m);
  for (vxSize i = 0; i < n * n; ++i) A[i] = realAt(a, i);
  for (vxSize i = 0; i < n * m; ++i) B[i] = realAt(b, i);
  for (vxSize c = 0; c < n; ++c) {
    vxSize piv = c;
    for (vxSize r = c + 1; r < n; ++r)
      if (std::abs(A[r + c * n]) > std::abs(A[piv + c * n])) piv = r;
    if (A[piv + c * n] == 0) throw Error("VANTEL:sgsh:SingularMatrix");
    if (piv != c) {
      for (vxSize j = 0; j < n; ++j) std::swap(A[c + j * n], A[piv + j * n]);
      for (vxSize j = 0; j < m; ++j) std::swap(B[c + j * n], B[piv + j * n]);
    }
    for (vxSize r = c + 1; r < n; ++r) {
      const double f = A[r + c * n] / A[c + c * n];
      if (f == 0) continue;
      for (vxSize j = c; j < n; ++j) A[r + j * n] -= f * A[c + j * n];
      for (vxSize j = 0; j < m; ++j) B[r + j * n] -= f * B[c + j * n];
    }
  }
  for (vxSize j = 0; j < m; ++j)
    for (vxSize r = n; r-- > 0;) {
      double s = B[r + j * n];
      for (vxSize c = r + 1; c < n; ++c) s -= A[r + c * n] * B[c + j * n];
      B[r + j * n] = s / A[r + r * n];
    }
  return doubles({n, m}, B);
}

Value elementwise(Op op, const vxArray* a, const vxArray* b) {
  if (!isNumberLike(a) || !isNumberLike(b)) badOperands(op, a, b);
  const bool logicalResult = isComparison(op) || isLogicalOp(op);
  const bool complex = vxIsComplex(a) || vxIsComplex(b) || needsComplexPow(op, a, b);
  const Dims da = dimsOf(a), db = dimsOf(b);
  Dims out;
  std::vector<vxIndex> ia, ib;
  const bool same = da == db;
  if (same) {
    out = da;
  } else {
    out = broadcastDims(da, db, op, a, b);
    broadcastWalk(out, da, db, ia, ib);
  }
  const vxSize n = countOf(out);
  auto posA = [&](vxIndex i) { return same ? i : ia[i]; };
  auto posB = [&](vxIndex i) { return same ? i : ib[i]; };
  if (logicalResult) {
    Value r = makeArray(vxLOGICAL_CLASS, out);
    bool* p = vxGetLogicals(r.mut());
    for (vxIndex i = 0; i < n; ++i) {
      if (isLogicalOp(op) && (std::isnan(realAt(a, posA(i))) || std::isnan(realAt(b, posB(i)))))
        throw Error("VANTEL:sgsh:NaNToLogical");
      p[i] = complex ? applyComplex(op, complexAt(a, posA(i)), complexAt(b, posB(i))).real() != 0
                     : applyReal(op, realAt(a, posA(i)), realAt(b, posB(i))) != 0;
    }
    return r;
  }
  if (complex) {
    std::vector<cplx> r(n);
    for (vxIndex i = 0; i < n; ++i) r[i] = applyComplex(op, complexAt(a, posA(i)), complexAt(b, posB(i)));
    return complexes(out, r);
  }
  Value r = makeArray(vxDOUBLE_CLASS, out);
  double* p = vxGetPr(r.mut());
  for (vxIndex i = 0; i < n; ++i) p[i] = applyReal(op, realAt(a, posA(i)), realAt(b, posB(i)));
  // Arithmetic with an integer operand stays in its class, rounded and saturated.
  const vxClassID ca = vxGetClassID(a), cb = vxGetClassID(b);
  const bool intA = ca >= vxINT8_CLASS && ca <= vxUINT64_CLASS, intB = cb >= vxINT8_CLASS && cb <= vxUINT64_CLASS;
  if (intA && intB && ca != cb) throw Error("VANTEL:sgsh:MixedIntegers", classNameOf(a), classNameOf(b));
  if (intA || intB) return convertTo(r.get(), intA ? ca : cb, false);
  return r;
}

}  // namespace

Value binary(Op op, const vxArray* a, const vxArray* b) {
  // Fast path: two real double scalars.
  if (vxIsDouble(a) && vxIsDouble(b) && vxIsScalar(a) && vxIsScalar(b) && !vxIsComplex(a) && !vxIsComplex(b)) {
    const double x = vxGetPr(a)[0], y = vxGetPr(b)[0];
    if (isComparison(op)) return Value::logical(applyReal(op, x, y) != 0);
    if (isLogicalOp(op)) {
      if (std::isnan(x) || std::isnan(y)) throw Error("VANTEL:sgsh:NaNToLogical");
      return Value::logical(applyReal(op, x, y) != 0);
    }
    if (!((op == Op::Pow || op == Op::MatPow) && x < 0 && y != std::round(y))) return Value::scalar(applyReal(op, x, y));
  }
  if (vxIsString(a) || vxIsString(b)) return stringOp(op, a, b);
  if (!isNumberLike(a) || !isNumberLike(b)) badOperands(op, a, b);
  const bool scalarA = vxGetNumberOfElements(a) == 1, scalarB = vxGetNumberOfElements(b) == 1;
  switch (op) {
    case Op::MatMul:
      return scalarA || scalarB ? elementwise(Op::Mul, a, b) : matMul(a, b);
    case Op::MatDiv:
      if (scalarB) return elementwise(Op::Div, a, b);
      // a / b is (b' \ a')'.
      return unary(Op::Transpose, solve(unary(Op::Transpose, b).get(), unary(Op::Transpose, a).get()).get());
    case Op::MatLeftDiv:
      return scalarA ? elementwise(Op::LeftDiv, a, b) : solve(a, b);
    case Op::MatPow: {
      if (scalarA && scalarB) return elementwise(Op::Pow, a, b);
      const Dims da = dimsOf(a);
      if (!scalarB || da.size() > 2 || da[0] != da[1]) throw Error("VANTEL:sgsh:NotSquare", sizeText(da));
      const double e = realAt(b, 0);
      if (!(e >= 0) || !std::isfinite(e) || e != std::round(e)) throw Error("VANTEL:sgsh:MatrixPower");
      // Repeated squaring: a^1e10 takes some 34 products, not 1e10.
      Value r = makeArray(vxDOUBLE_CLASS, da);
      for (vxSize i = 0; i < da[0]; ++i) vxGetPr(r.mut())[i + i * da[0]] = 1;
      Value base = Value::copyOf(a);
      for (double k = e; k >= 1; k = std::floor(k / 2)) {
        if (std::fmod(k, 2) == 1) r = matMul(r.get(), base.get());
        if (k >= 2) base = matMul(base.get(), base.get());
      }
      return r;
    }
    case Op::Add:
    case Op::Sub:
    case Op::Mul:
    case Op::Div:
    case Op::LeftDiv:
    case Op::Pow:
    case Op::Eq:
    case Op::Ne:
    case Op::Lt:
    case Op::Le:
    case Op::Gt:
    case Op::Ge:
    case Op::And:
    case Op::Or:
      return elementwise(op, a, b);
    case Op::AndAnd:
    case Op::OrOr:
    case Op::Neg:
    case Op::Plus:
    case Op::Not:
    case Op::CTranspose:
    case Op::Transpose:
      break;
  }
  badOperands(op, a, b);
}

Value unary(Op op, const vxArray* a) {
  switch (op) {
    case Op::Neg:
    case Op::Plus: {
      if (!isNumberLike(a)) badOperands(op, a, nullptr);
      if (vxIsDouble(a) && vxIsScalar(a) && !vxIsComplex(a))
        return Value::scalar(op == Op::Neg ? -vxGetPr(a)[0] : vxGetPr(a)[0]);
      const vxClassID cls = vxGetClassID(a);
      const bool integer = cls >= vxINT8_CLASS && cls <= vxUINT64_CLASS;
      if (op == Op::Plus) return integer ? Value::copyOf(a) : convertTo(a, vxDOUBLE_CLASS, vxIsComplex(a));
      Value r = convertTo(a, vxDOUBLE_CLASS, vxIsComplex(a));
      const vxSize n = vxGetNumberOfElements(r.get());
      if (vxIsComplex(r.get())) {
        cplx* p = vxGetComplexDoubles(r.mut());
        for (vxSize i = 0; i < n; ++i) p[i] = -p[i];
      } else {
        double* p = vxGetPr(r.mut());
        for (vxSize i = 0; i < n; ++i) p[i] = -p[i];
      }
      // Integers stay in their class, saturated: -int8(-128) is 127.
      return integer ? convertTo(r.get(), cls, false) : r;
    }
    case Op::Not: {
      if (!isNumberLike(a)) badOperands(op, a, nullptr);
      const Dims d = dimsOf(a);
      Value r = makeArray(vxLOGICAL_CLASS, d);
      bool* p = vxGetLogicals(r.mut());
      const vxSize n = countOf(d);
      for (vxSize i = 0; i < n; ++i) {
        const double v = realAt(a, i);
        if (std::isnan(v)) throw Error("VANTEL:sgsh:NaNToLogical");
        p[i] = v == 0 && complexAt(a, i).imag() == 0;
      }
      return r;
    }
    case Op::CTranspose:
    case Op::Transpose: {
      const Dims d = dimsOf(a);
      if (d.size() > 2) throw Error("VANTEL:sgsh:NotMatrix", opText(op));
      if (vxGetClassID(a) == vxFUNCTION_CLASS) return Value::copyOf(a);
      const vxSize m = d[0], n = d[1];
      std::vector<vxIndex> pos(m * n);
      for (vxSize i = 0; i < m; ++i)
        for (vxSize j = 0; j < n; ++j) pos[j + i * n] = i + j * m;
      Value r = gather(a, pos, {n, m});
      if (op == Op::CTranspose && vxIsComplex(r.get())) {
        cplx* p = vxGetComplexDoubles(r.mut());
        for (vxSize i = 0; i < m * n; ++i) p[i] = std::conj(p[i]);
      }
      return r;
    }
    case Op::Add:
    case Op::Sub:
    case Op::MatMul:
    case Op::MatDiv:
    case Op::MatLeftDiv:
    case Op::MatPow:
    case Op::Mul:
    case Op::Div:
    case Op::LeftDiv:
    case Op::Pow:
    case Op::Eq:
    case Op::Ne:
    case Op::Lt:
    case Op::Le:
    case Op::Gt:
    case Op::Ge:
    case Op::And:
    case Op::Or:
    case Op::AndAnd:
    case Op::OrOr:
      break;
  }
  badOperands(op, a, nullptr);
}

std::size_t rangeCount(double first, double step, double last) {
  if (step == 0 || std::isnan(first) || std::isnan(step) || std::isnan(last)) return 0;
  if ((step > 0 && first > last) || (step < 0 && first < last)) return 0;
  const double n = std::floor((last - first) / step + 1e-10);
  // 1:Inf, or a range with more elements than an array may hold.
  if (!(n < static_cast<double>(elementLimit()))) throw Error("VANTEL:sgsh:TooLarge", "range");
  return static_cast<std::size_t>(n) + 1;
}

Value range(const vxArray* first, const vxArray* step, const vxArray* last) {
  for (const vxArray* x : {first, step, last})
    if (x && (!isNumberLike(x) || vxIsEmpty(x))) throw Error("VANTEL:sgsh:BadRangeOperand");
  const double f = realAt(first, 0), s = step ? realAt(step, 0) : 1.0, l = realAt(last, 0);
  const std::size_t n = rangeCount(f, s, l);
  if (vxIsChar(first) && vxIsChar(last)) {
    Value r = makeArray(vxCHAR_CLASS, {1, n});
    for (std::size_t i = 0; i < n; ++i) vxGetChars(r.mut())[i] = static_cast<vxChar>(f + s * static_cast<double>(i));
    return r;
  }
  Value r = makeArray(vxDOUBLE_CLASS, {1, n});
  double* p = vxGetPr(r.mut());
  for (std::size_t i = 0; i < n; ++i) p[i] = f + s * static_cast<double>(i);
  return r;
}

}  // namespace sgsh::ops
