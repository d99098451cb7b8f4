// Concatenation: the class of the result, conversion of the pieces, and the
// placement of their elements.
#include "eval/Concat.h"

#include <algorithm>
#include <set>

#include <foundation/core/except/Error.h>

#include "eval/ArrayOps.h"
#include "foundation/text/Utf.h"

namespace sgsh::ops {

using foundation::core::except::Error;

namespace {

bool isBareEmpty(const vxArray* a) {
  return vxIsDouble(a) && vxGetNumberOfDimensions(a) == 2 && vxGetM(a) == 0 && vxGetN(a) == 0;
}

vxClassID resultClass(const std::vector<Value>& pieces, bool& complex) {
  bool cell = false, st = false, str = false, chr = false, single = false, allLogical = true, obj = false,
       fn = false;
  vxClassID integer = vxUNKNOWN_CLASS;
  complex = false;
  for (const Value& p : pieces) {
    const vxClassID c = vxGetClassID(p.get());
    cell |= c == vxCELL_CLASS;
    st |= c == vxSTRUCT_CLASS;
    str |= c == vxSTRING_CLASS;
    chr |= c == vxCHAR_CLASS;
    single |= c == vxSINGLE_CLASS;
    obj |= c == vxOBJECT_CLASS;
    fn |= c == vxFUNCTION_CLASS;
    allLogical &= c == vxLOGICAL_CLASS;
    if (c >= vxINT8_CLASS && c <= vxUINT64_CLASS && integer == vxUNKNOWN_CLASS) integer = c;
    complex |= vxIsComplex(p.get());
  }
  if (cell) return vxCELL_CLASS;
  if (fn) throw Error("VANTEL:sgsh:ConcatHandles");
  if (obj) return vxOBJECT_CLASS;
  if (st) return vxSTRUCT_CLASS;
  if (str) return vxSTRING_CLASS;
  if (integer != vxUNKNOWN_CLASS) return integer;
  if (chr) return vxCHAR_CLASS;
  if (single) return vxSINGLE_CLASS;
  if (allLogical) return vxLOGICAL_CLASS;
  return vxDOUBLE_CLASS;
}

// A piece in the result's class.
Value asClass(const Value& p, vxClassID cls, bool complex) {
  const vxArray* a = p.get();
  const vxClassID c = vxGetClassID(a);
  switch (cls) {
    case vxCELL_CLASS:
      if (c == vxCELL_CLASS) return p;
      {
        Value cell(vxCreateCellMatrix(1, 1));
        vxSetCell(cell.mut(), 0, vxCreateSharedDataCopy(a));
        return cell;
      }
    case vxSTRUCT_CLASS:
      if (c != vxSTRUCT_CLASS) throw Error("VANTEL:sgsh:CannotConvert", classNameOf(a), "struct");
      return p;
    case vxOBJECT_CLASS:
      if (c != vxOBJECT_CLASS) throw Error("VANTEL:sgsh:CannotConvert", classNameOf(a), "object");
      return p;
    case vxSTRING_CLASS: {
      if (c == vxSTRING_CLASS) return p;
      Value s = makeArray(vxSTRING_CLASS, {1, 1});
      if (c == vxCHAR_CLASS) {
        vxSetStringElement(s.mut(), 0, matrix::get_ustring(a));
      } else if (isNumberLike(a) && vxGetNumberOfElements(a) == 1) {
        vxSetStringElement(s.mut(), 0, foundation::text::utf8ToUtf16(c == vxLOGICAL_CLASS ? (realAt(a, 0) ? "true" : "false")
                                                                  : numberAsText(realAt(a, 0))));
      } else {
        throw Error("VANTEL:sgsh:CannotConvert", classNameOf(a), "string");
      }
      return s;
    }
    default:
      return convertTo(a, cls, cls == vxDOUBLE_CLASS && complex);
  }
}

}  // namespace

Value concat(std::vector<Value>& input, bool horizontal) {
  std::vector<Value> pieces;
  for (Value& p : input)
    if (!isBareEmpty(p.get())) pieces.push_back(std::move(p));
  if (pieces.empty()) return input.empty() ? Value::emptyDouble() : std::move(input.front());
  if (pieces.size() == 1) return std::move(pieces.front());
  bool complex = false;
  const vxClassID cls = resultClass(pieces, complex);
  for (Value& p : pieces) p = asClass(p, cls, complex);
  // Pieces with no elements in the joined direction still must agree in
  // the other one, except fully empty ones, which are skipped.
  std::vector<Value> used;
  for (Value& p : pieces)
    if (!vxIsEmpty(p.get())) used.push_back(std::move(p));
  if (used.empty()) return std::move(pieces.front());
  if (cls == vxSTRUCT_CLASS) {
    const std::vector<std::string> first = fieldNames(used[0].get());
    const std::set<std::string> want(first.begin(), first.end());
    for (const Value& p : used) {
      const std::vector<std::string> f = fieldNames(p.get());
      if (std::set<std::string>(f.begin(), f.end()) != want) throw Error("VANTEL:sgsh:FieldsMismatch");
    }
  }
  if (cls == vxOBJECT_CLASS) {
    for (const Value& p : used)
      if (vxGetObjectClassID(p.get()) != vxGetObjectClassID(used[0].get()))
        throw Error("VANTEL:sgsh:CannotConvert", classNameOf(p.get()), classNameOf(used[0].get()));
  }
  vxSize fixed = 0, total = 0;
  for (std::size_t i = 0; i < used.size(); ++i) {
    const Dims d = dimsOf(used[i].get());
    if (d.size() > 2) throw Error("VANTEL:sgsh:ConcatND");
    const vxSize along = horizontal ? d[1] : d[0], across = horizontal ? d[0] : d[1];
    if (i == 0) fixed = across;
    else if (across != fixed) throw Error(horizontal ? "VANTEL:sgsh:HorzcatMismatch" : "VANTEL:sgsh:VertcatMismatch");
    total += along;
  }
  const Dims out = horizontal ? Dims{fixed, total} : Dims{total, fixed};
  Value r = makeLike(used[0].get(), out);
  vxSize offset = 0;
  for (const Value& p : used) {
    const vxSize m = vxGetM(p.get()), n = vxGetN(p.get());
    for (vxSize j = 0; j < n; ++j)
      for (vxSize i = 0; i < m; ++i) {
        const vxIndex dst = horizontal ? i + (offset + j) * out[0] : (offset + i) + j * out[0];
        copyElement(r.mut(), dst, p.get(), i + j * m);
      }
    offset += horizontal ? n : m;
  }
  return r;
}

}  // namespace sgsh::ops
