// The walk over cells and structs that both conversions share, and the two
// leaf rules.
#include "sgutils/persistence/UDDConverter.h"

#include <bit>
#include <complex>
#include <cstdint>

#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgutils {

namespace {

using LeafRule = vxArray* (*)(vxArray*);

vxArray* convertTree(vxArray* value, LeafRule leaf);

// An unshared shallow copy of a container, made on the first element that
// changes; the input stays as it is.
class ContainerCopy {
 public:
  explicit ContainerCopy(vxArray* source) : source_(source) {}
  ContainerCopy(const ContainerCopy&) = delete;
  ContainerCopy& operator=(const ContainerCopy&) = delete;
  ~ContainerCopy() {
    if (copy_) vxDestroyArray(copy_);
  }
  vxArray* get() {
    if (!copy_) {
      copy_ = vxCreateSharedCopyNotOnArrayList(source_);
      vxUnshareShallow(copy_);
    }
    return copy_;
  }
  // The copy if one was made, else the input.
  vxArray* release() {
    vxArray* result = copy_ ? copy_ : source_;
    copy_ = nullptr;
    return result;
  }

 private:
  vxArray* source_;
  vxArray* copy_ = nullptr;
};

// Hands a changed element to `store`, or frees it when the store raises.
template <class Store>
void storeChanged(vxArray* changed, Store&& store) {
  matrix::unique_vxArray owned(changed);
  store(owned.get());
  (void)owned.release();
}

vxArray* convertCell(vxArray* cell, LeafRule leaf) {
  ContainerCopy copy(cell);
  const vxSize n = vxGetNumberOfElements(cell);
  for (vxIndex k = 0; k < n; ++k) {
    vxArray* element = vxGetCell(cell, k);
    if (!element) continue;
    vxArray* converted = convertTree(element, leaf);
    if (converted == element) continue;
    storeChanged(converted, [&](vxArray* v) { vxSetCell(copy.get(), k, v); });
  }
  return copy.release();
}

vxArray* convertStruct(vxArray* structure, LeafRule leaf) {
  ContainerCopy copy(structure);
  const vxSize n = vxGetNumberOfElements(structure);
  const int fields = vxGetNumberOfFields(structure);
  for (vxIndex k = 0; k < n; ++k) {
    for (int f = 0; f < fields; ++f) {
      vxArray* element = vxGetFieldByNumber(structure, k, f);
      if (!element) continue;
      vxArray* converted = convertTree(element, leaf);
      if (converted == element) continue;
      storeChanged(converted, [&](vxArray* v) { vxSetFieldByNumber(copy.get(), k, f, v); });
    }
  }
  return copy.release();
}

vxArray* convertTree(vxArray* value, LeafRule leaf) {
  if (!value) return nullptr;
  if (vxIsCell(value)) return convertCell(value, leaf);
  if (vxIsStruct(value)) return convertStruct(value, leaf);
  return leaf(value);
}

constexpr std::uint64_t kMarkerBits = 0x7E7868608BF02A05ull;

bool isOldHandleMarker(const vxArray* value) {
  if (!vxIsDouble(value) || !vxIsComplex(value)) return false;
  const std::complex<double>* z = vxGetComplexDoubles(value);
  const vxSize n = vxGetNumberOfElements(value);
  for (vxIndex k = 0; k < n; ++k)
    if (z[k].imag() != UDDConverter::handleMarker()) return false;
  return true;
}

// Graphics placeholders in the shape of `like`: the new system's "no object
// here" for every old handle the file held.
vxArray* placeholdersShapedLike(const vxArray* like) {
  static const COSID graphics("vantel.graphics.Graphics");
  static const COSID placeholder("vantel.graphics.GraphicsPlaceholder");
  const vxSize* dims = vxGetDimensions(like);
  const vxSize rows = dims[0];
  const vxSize cols = vxGetNumberOfElements(like) / (rows ? rows : 1);
  if (vxGetNumberOfElements(like) == 0) {
    matrix::unique_vxArray empty(omCreateVCOSEmpty(placeholder));
    vxSetDimensions(empty.get(), dims, vxGetNumberOfDimensions(like));
    return empty.release();
  }
  // Null elements under the heterogeneous root are filled with its default
  // element, which is the placeholder.
  matrix::unique_vxArray result(omCreateVCOSMatrix(rows, cols, graphics));
  omSetClassOfHeterogeneousArray(result.get());
  vxSetDimensions(result.get(), dims, vxGetNumberOfDimensions(like));
  return result.release();
}

vxArray* replaceLeaf(vxArray* value) { return isOldHandleMarker(value) ? placeholdersShapedLike(value) : value; }

vxArray* convertLeaf(vxArray* value) {
  if (!vxIsA(value, "handle.handle") || omIsVCOS(value)) return value;
  return vxCreateNumericArray(vxGetNumberOfDimensions(value), vxGetDimensions(value), vxDOUBLE_CLASS, vxCOMPLEX);
}

}  // namespace

double UDDConverter::handleMarker() noexcept { return std::bit_cast<double>(kMarkerBits); }

vxArray* UDDConverter::replaceUDDHandles(vxArray* value) { return convertTree(value, &replaceLeaf); }

vxArray* UDDConverter::convertUDDToHandles(vxArray* value) { return convertTree(value, &convertLeaf); }

}  // namespace sgutils
