// What findobj counts as text, and reading it without a copy where possible.
#include "vcos/src/findobj/TextCompare.h"

#include "vx/matrix.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

namespace vcos::search {

bool isText(const vxArray* a) {
  if (!a) return false;
  if (vxIsChar(a)) return vxGetNumberOfDimensions(a) == 2 && (vxGetM(a) == 1 || vxGetNumberOfElements(a) == 0);
  return vxIsString(a) && vxIsScalar(a) && vxGetStringElement(a, 0).has_value();
}

std::u16string_view charsOf(const vxArray* a) {
  if (!vxIsChar(a)) return {};
  return std::u16string_view(vxGetChars(a), vxGetNumberOfElements(a));
}

std::u16string textOf(const vxArray* a) {
  if (vxIsChar(a)) return std::u16string(charsOf(a));
  return matrix::get_ustring(a);
}

}  // namespace vcos::search
