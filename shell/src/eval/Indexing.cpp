// Indexing: selection of elements by subscripts or linear indices, and
// assignment with growth, class rules and deletion.
#include "eval/Indexing.h"

#include <algorithm>
#include <cmath>

#include <foundation/core/except/Error.h>

namespace sgsh::ops {

using foundation::core::except::Error;

bool isColon(const vxArray* arg) noexcept {
  return vxIsChar(arg) && vxGetNumberOfElements(arg) == 1 && vxGetChars(arg)[0] == u':';
}

namespace {

struct IndexList {
  bool colon = false;
  std::vector<vxIndex> idx;  // zero-based
  Dims shape;                // of the index array (for linear indexing)
  bool logical = false;
};

// Reads one index argument; extent is the size of the indexed dimension
// (for ':' and logical masks).
IndexList readIndex(const vxArray* arg, vxSize extent) {
  IndexList l;
  if (isColon(arg)) {
    l.colon = true;
    l.idx.resize(extent);
    for (vxSize i = 0; i < extent; ++i) l.idx[i] = i;
    l.shape = {extent, 1};
    return l;
  }
  if (vxIsLogical(arg)) {
    const vxSize n = vxGetNumberOfElements(arg);
    const bool* p = vxGetLogicals(arg);
    for (vxSize i = 0; i < n; ++i)
      if (p[i]) {
        if (i >= extent) throw Error("VANTEL:sgsh:IndexOutOfBounds", i + 1, extent);
        l.idx.push_back(i);
      }
    l.logical = true;
    l.shape = vxGetM(arg) == 1 && vxGetNumberOfDimensions(arg) == 2 ? Dims{1, l.idx.size()} : Dims{l.idx.size(), 1};
    return l;
  }
  if (!isNumberLike(arg) || vxIsChar(arg)) throw Error("VANTEL:sgsh:BadIndex");
  const vxSize n = vxGetNumberOfElements(arg);
  l.idx.resize(n);
  for (vxSize i = 0; i < n; ++i) {
    l.idx[i] = positionFrom(realAt(arg, i));
  }
  l.shape = dimsOf(arg);
  return l;
}

// The extent of dimension k when a is indexed with count subscripts: the
// last subscript covers all remaining dimensions.
vxSize extentOf(const Dims& d, std::size_t k, std::size_t count) {
  if (k + 1 < count) return k < d.size() ? d[k] : 1;
  vxSize e = 1;
  for (std::size_t j = k; j < d.size(); ++j) e *= d[j];
  return e;
}

bool isVectorShape(const Dims& d) { return d.size() == 2 && (d[0] == 1 || d[1] == 1); }

// Linear positions for subscripts lists over dims of count subscripts.
std::vector<vxIndex> positionsOf(const std::vector<IndexList>& lists, const Dims& d) {
  const std::size_t count = lists.size();
  std::vector<vxSize> strides(count);
  vxSize stride = 1;
  for (std::size_t k = 0; k < count; ++k) {
    strides[k] = stride;
    stride *= extentOf(d, k, count);
  }
  Dims sizes;
  for (const IndexList& l : lists) sizes.push_back(l.idx.size());
  const vxSize total = checkedCount(sizes, "indexing");
  std::vector<vxIndex> pos;
  pos.reserve(total);
  if (total == 0) return pos;
  std::vector<std::size_t> at(count, 0);
  for (;;) {
    vxIndex lin = 0;
    for (std::size_t k = 0; k < count; ++k) lin += lists[k].idx[at[k]] * strides[k];
    pos.push_back(lin);
    std::size_t k = 0;
    while (k < count && ++at[k] == lists[k].idx.size()) at[k++] = 0;
    if (k == count) break;
  }
  return pos;
}

bool isDeletion(const vxArray* rhs) {
  return vxIsDouble(rhs) && vxGetNumberOfDimensions(rhs) == 2 && vxGetM(rhs) == 0 && vxGetN(rhs) == 0;
}

// What a(i) = rhs stores: the value in the target's class, except where the
// language widens, and the target to store it in when the target itself must
// change first (an empty [] taking the value's class, a real array turning
// complex, a struct gaining fields). Reads a, never writes it.
struct Conformed {
  Value value;
  Value target;  // empty: the target stays as it is
};

Conformed conform(const vxArray* a, const vxArray* rhs, bool targetEmpty) {
  const vxClassID ta = vxGetClassID(a), tr = vxGetClassID(rhs);
  if (targetEmpty && vxIsDouble(a)) return {Value::copyOf(rhs), makeLike(rhs, dimsOf(a))};
  if (ta == tr) {
    if (ta == vxDOUBLE_CLASS && vxIsComplex(rhs) && !vxIsComplex(a))
      return {Value::copyOf(rhs), convertTo(a, vxDOUBLE_CLASS, true)};
    if (ta == vxDOUBLE_CLASS && vxIsComplex(a) && !vxIsComplex(rhs)) return {convertTo(rhs, vxDOUBLE_CLASS, true), {}};
    if (ta == vxSTRUCT_CLASS) {
      // Fields of the value join the target's.
      Value target;
      for (const std::string& f : fieldNames(rhs)) {
        if (vxGetFieldNumber(a, f.c_str()) >= 0) continue;
        if (!target.has()) target = Value::copyOf(a);
        vxAddFieldToStruct(target.mut(), f.c_str());
      }
      const vxArray* widest = target.has() ? target.get() : a;
      if (fieldNames(rhs).size() != fieldNames(widest).size()) {
        Value widened = makeLike(widest, dimsOf(rhs));
        for (vxSize i = 0; i < vxGetNumberOfElements(rhs); ++i) copyElement(widened.mut(), i, rhs, i);
        return {std::move(widened), std::move(target)};
      }
      return {Value::copyOf(rhs), std::move(target)};
    }
    return {Value::copyOf(rhs), {}};
  }
  if (ta == vxSTRING_CLASS && isText(rhs)) {
    Value s = makeArray(vxSTRING_CLASS, {1, 1});
    vxSetStringElement(s.mut(), 0, matrix::get_ustring(rhs));
    return {std::move(s), {}};
  }
  if (isNumberLike(a) && isNumberLike(rhs)) {
    if (ta == vxLOGICAL_CLASS)
      return {convertTo(rhs, vxDOUBLE_CLASS, vxIsComplex(rhs)), convertTo(a, vxDOUBLE_CLASS, vxIsComplex(rhs))};
    if (ta == vxDOUBLE_CLASS) {
      const bool cx = vxIsComplex(a) || vxIsComplex(rhs);
      return {convertTo(rhs, vxDOUBLE_CLASS, cx), cx && !vxIsComplex(a) ? convertTo(a, vxDOUBLE_CLASS, true) : Value()};
    }
    return {convertTo(rhs, ta, false), {}};
  }
  throw Error("VANTEL:sgsh:CannotConvert", classNameOf(rhs), classNameOf(a));
}

Value deleteElements(const vxArray* a, std::span<const Value> args) {
  const Dims d = dimsOf(a);
  if (args.size() == 1) {
    IndexList l = readIndex(args[0].get(), countOf(d));
    const vxSize n = countOf(d);
    std::vector<bool> drop(n, false);
    for (vxIndex i : l.idx) {
      if (i >= n) throw Error("VANTEL:sgsh:IndexOutOfBounds", i + 1, n);
      drop[i] = true;
    }
    std::vector<vxIndex> keep;
    for (vxIndex i = 0; i < n; ++i)
      if (!drop[i]) keep.push_back(i);
    if (l.colon) return makeLike(a, {0, 0});
    const Dims out = d.size() == 2 && d[1] == 1 && d[0] != 1 ? Dims{keep.size(), 1} : Dims{1, keep.size()};
    return gather(a, keep, out);
  }
  // Subscripts: all but one must cover their whole dimension.
  std::vector<IndexList> lists;
  std::size_t cut = args.size();
  for (std::size_t k = 0; k < args.size(); ++k) {
    const vxSize e = extentOf(d, k, args.size());
    lists.push_back(readIndex(args[k].get(), e));
    std::vector<vxIndex> sorted = lists.back().idx;
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    const bool whole = sorted.size() == e;
    for (vxIndex i : sorted)
      if (i >= e) throw Error("VANTEL:sgsh:IndexOutOfBounds", i + 1, e);
    if (!whole) {
      if (cut != args.size()) throw Error("VANTEL:sgsh:BadDeletion");
      cut = k;
    }
  }
  if (cut == args.size()) return makeLike(a, {0, 0});  // everything goes
  Dims sd;
  for (std::size_t k = 0; k < args.size(); ++k) sd.push_back(extentOf(d, k, args.size()));
  std::vector<bool> drop(sd[cut], false);
  for (vxIndex i : lists[cut].idx) drop[i] = true;
  std::vector<IndexList> keepLists(args.size());
  for (std::size_t k = 0; k < args.size(); ++k)
    for (vxIndex i = 0; i < sd[k]; ++i)
      if (k != cut || !drop[i]) keepLists[k].idx.push_back(i);
  Dims out = sd;
  out[cut] = keepLists[cut].idx.size();
  return gather(a, positionsOf(keepLists, sd), out);
}

}  // namespace

Selection select(const vxArray* a, std::span<const Value> args) {
  const Dims d = dimsOf(a);
  Selection s;
  if (args.empty()) {
    s.dims = d;
    s.positions.resize(countOf(d));
    for (vxIndex i = 0; i < s.positions.size(); ++i) s.positions[i] = i;
    return s;
  }
  if (args.size() == 1) {
    const vxSize n = countOf(d);
    IndexList l = readIndex(args[0].get(), n);
    for (vxIndex i : l.idx)
      if (i >= n) throw Error("VANTEL:sgsh:IndexOutOfBounds", i + 1, n);
    s.positions = std::move(l.idx);
    // A vector indexed by a vector keeps its orientation.
    if (!l.colon && isVectorShape(d) && isVectorShape(l.shape) && !(d[0] == 1 && d[1] == 1))
      s.dims = d[0] == 1 ? Dims{1, s.positions.size()} : Dims{s.positions.size(), 1};
    else if (l.logical && !isVectorShape(d))
      s.dims = {s.positions.size(), 1};
    else
      s.dims = l.shape;
    return s;
  }
  std::vector<IndexList> lists;
  for (std::size_t k = 0; k < args.size(); ++k) {
    const vxSize e = extentOf(d, k, args.size());
    lists.push_back(readIndex(args[k].get(), e));
    for (vxIndex i : lists.back().idx)
      if (i >= e) throw Error("VANTEL:sgsh:IndexOutOfBounds", i + 1, e);
    s.dims.push_back(lists.back().idx.size());
  }
  s.positions = positionsOf(lists, d);
  return s;
}

Value indexGet(const vxArray* a, std::span<const Value> args) {
  Selection s = select(a, args);
  return gather(a, s.positions, s.dims);
}

namespace {

// Where an assignment writes: the positions the subscripts name in the
// array after growth, and the dimensions it grows to (none when it fits).
struct GrowPlan {
  std::vector<vxIndex> positions;
  Dims dims;
  bool grows = false;
};

// Reads the subscripts against the dimensions d; raises for bad ones or a
// growth the array cannot take. Changes nothing.
GrowPlan planGrowth(const Dims& d, std::span<const Value> args, const vxArray* rhs) {
  GrowPlan plan;
  // x() = v and c{} = v name no place (on an empty x there is no element 1).
  if (args.empty()) throw Error("VANTEL:sgsh:NoSubscripts");
  if (args.size() == 1) {
    const vxSize n = countOf(d);
    IndexList l = readIndex(args[0].get(), n);
    if (l.colon && n == 0 && rhs) {
      // x(:) = v on an empty x takes v's length.
      const vxSize m = vxGetNumberOfElements(rhs);
      l.idx.resize(m);
      for (vxSize i = 0; i < m; ++i) l.idx[i] = i;
    }
    vxIndex top = 0;
    for (vxIndex i : l.idx) top = std::max(top, i + 1);
    if (top > n) {
      if (n == 0 && (d.size() > 2 || (d[0] == 0 && d[1] == 0)))
        plan.dims = {1, top};
      else if (d.size() == 2 && d[0] == 1)
        plan.dims = {1, top};
      else if (d.size() == 2 && d[1] == 1)
        plan.dims = {top, 1};
      else if (d.size() == 2 && d[0] == 0)
        plan.dims = {1, top};
      else
        throw Error("VANTEL:sgsh:CannotGrow", sizeText(d));
      plan.grows = true;
    }
    plan.positions = std::move(l.idx);
    return plan;
  }
  // Subscripts past the end grow their dimension; ':' on an empty
  // dimension takes the matching extent of the value.
  const std::size_t count = args.size();
  Dims want = d;
  while (want.size() < count) want.push_back(1);
  std::vector<IndexList> lists;
  const Dims rd = rhs ? dimsOf(rhs) : Dims{1, 1};
  std::size_t rk = 0;
  for (std::size_t k = 0; k < count; ++k) {
    const vxSize e = extentOf(want, k, count);
    IndexList l = readIndex(args[k].get(), e);
    if (l.colon && e == 0 && rhs && vxGetNumberOfElements(rhs) != 1) {
      while (rk < rd.size() && rd[rk] == 1) ++rk;
      const vxSize m = rk < rd.size() ? rd[rk++] : 1;
      l.idx.resize(m);
      for (vxSize i = 0; i < m; ++i) l.idx[i] = i;
    }
    vxIndex top = 0;
    for (vxIndex i : l.idx) top = std::max(top, i + 1);
    if (top > e) {
      if (k + 1 == count && want.size() > count) throw Error("VANTEL:sgsh:CannotGrow", sizeText(d));
      want[k] = top;
    }
    lists.push_back(std::move(l));
  }
  checkedCount(want, "indexing");
  plan.grows = normalized(want) != normalized(d);
  if (plan.grows) plan.dims = normalized(want);
  const Dims& after = plan.grows ? plan.dims : d;
  plan.positions = positionsOf(lists, after.size() >= count ? after : want);
  return plan;
}

// True when every element of an array of dimensions od keeps its linear
// position in dimensions nd: only the last dimension that is not a trailing
// singleton changes.
bool keepsLayout(const Dims& od, const Dims& nd) {
  if (countOf(od) == 0) return true;
  const std::size_t n = std::max(od.size(), nd.size());
  auto at = [](const Dims& d, std::size_t k) { return k < d.size() ? d[k] : vxSize{1}; };
  std::size_t h = n;
  for (std::size_t k = n; k-- > 0;)
    if (at(od, k) != at(nd, k)) {
      h = k;
      break;
    }
  if (h == n) return true;
  for (std::size_t k = h + 1; k < n; ++k)
    if (at(od, k) != 1) return false;
  return true;
}

// Grows a to nd. When the elements keep their positions the array grows in
// place (its storage keeps spare room, so growing one element at a time is
// amortised linear); otherwise the elements move into a new array.
void applyGrowth(Value& a, const Dims& nd) {
  const vxArray* v = a.get();
  const bool inPlace = (isNumberLike(v) || vxIsCell(v) || vxIsStruct(v) || vxIsObject(v)) && keepsLayout(dimsOf(v), nd);
  if (inPlace)
    vxSetDimensions(a.mut(), nd.data(), nd.size());
  else
    a = resized(v, nd);
}

// The array an assignment to an undefined variable starts from.
Value startFor(const vxArray* rhs) {
  return vxIsCell(rhs) || vxIsStruct(rhs) || vxIsString(rhs) || vxGetClassID(rhs) == vxOBJECT_CLASS
             ? makeLike(rhs, {0, 0})
             : Value::emptyDouble();
}

}  // namespace

void indexAssignInPlace(Value& a, std::span<const Value> args, const vxArray* rhs) {
  // Everything that can fail runs before the first write to a.
  Value start = a.has() ? Value() : startFor(rhs);
  const vxArray* target = a.has() ? a.get() : start.get();
  if (isDeletion(rhs)) {
    a = deleteElements(target, args);
    return;
  }
  const bool targetEmpty = vxIsEmpty(target);
  if (vxIsCell(target) != vxIsCell(rhs) && !(targetEmpty && vxIsDouble(target)))
    throw Error("VANTEL:sgsh:CannotConvert", classNameOf(rhs), classNameOf(target));
  Conformed c = conform(target, rhs, targetEmpty);
  if (c.target.has()) target = c.target.get();
  GrowPlan plan = planGrowth(dimsOf(target), args, c.value.get());
  const vxSize nv = vxGetNumberOfElements(c.value.get());
  if (nv != 1 && nv != plan.positions.size())
    throw Error("VANTEL:sgsh:AssignSizeMismatch", plan.positions.size(), nv);
  if (c.target.has())
    a = std::move(c.target);
  else if (!a.has())
    a = std::move(start);
  if (plan.grows) applyGrowth(a, plan.dims);
  vxArray* out = a.mut();
  for (std::size_t k = 0; k < plan.positions.size(); ++k)
    copyElement(out, plan.positions[k], c.value.get(), nv == 1 ? 0 : k);
}

Value indexAssign(Value a, std::span<const Value> args, const vxArray* rhs) {
  indexAssignInPlace(a, args, rhs);
  return a;
}

vxIndex assignPosition(Value& a, std::span<const Value> args, vxClassID classIfNew) {
  if (!a.has() || (vxIsDouble(a.get()) && vxIsEmpty(a.get()))) a = makeArray(classIfNew, {0, 0});
  GrowPlan plan = planGrowth(dimsOf(a.get()), args, nullptr);
  if (plan.positions.size() != 1) throw Error("VANTEL:sgsh:NotOneElement", plan.positions.size());
  if (plan.grows) applyGrowth(a, plan.dims);
  return plan.positions[0];
}

void braceAssignInPlace(Value& c, std::span<const Value> args, Value v) {
  if (c.has() && !vxIsCell(c.get()) && !(vxIsDouble(c.get()) && vxIsEmpty(c.get())))
    throw Error("VANTEL:sgsh:BraceOnNonCell", classNameOf(c.get()));
  const bool fresh = !c.has() || !vxIsCell(c.get());
  Value start = fresh ? makeArray(vxCELL_CLASS, {0, 0}) : Value();
  GrowPlan plan = planGrowth(dimsOf(fresh ? start.get() : c.get()), args, nullptr);
  if (plan.positions.size() != 1) throw Error("VANTEL:sgsh:NotOneElement", plan.positions.size());
  if (fresh) c = std::move(start);
  if (plan.grows) applyGrowth(c, plan.dims);
  vxSetCell(c.mut(), plan.positions[0], v.release());
}

Value braceAssign(Value c, std::span<const Value> args, Value v) {
  braceAssignInPlace(c, args, std::move(v));
  return c;
}

}  // namespace sgsh::ops
