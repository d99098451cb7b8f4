// Text in and out of char and string arrays, in UTF-8 and UTF-16.
#include "vx/vxText.h"

#include <cstring>

#include "StringPayload.h"
#include "foundation/text/Utf.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxData.h"
#include "vx/vxMemory.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using namespace vx::impl;
using foundation::text::utf16ToUtf8;
using foundation::text::utf8ToUtf16;

namespace {

// The UTF-16 text of a char array, or of a string scalar that is not missing;
// null when the array is neither. A char array must be a row (or empty) unless
// anyCharShape is set.
bool textOf(const vxArray& a, bool anyCharShape, std::u16string_view& out) {
  if (a.cls() == vxCHAR_CLASS) {
    const vxSize numel = numelOf(a);
    const bool row = a.ndim == 2 && a.dims2[0] == 1;
    if (!anyCharShape && numel != 0 && !row) return false;
    out = std::u16string_view(static_cast<const char16_t*>(rawData(a)), numel);
    return true;
  }
  if (a.cls() == vxSTRING_CLASS && numelOf(a) == 1) {
    const auto& s = static_cast<const StringPayload*>(a.payload.get())->strings[0];
    if (!s) return false;
    out = *s;
    return true;
  }
  return false;
}

vxArray* createCharRow(std::u16string_view text) {
  const vxSize dims[2] = {1, text.size()};
  vxArray* a = vxCreateCharArray(2, dims);
  if (!text.empty()) std::memcpy(vxGetChars(a), text.data(), text.size() * sizeof(char16_t));
  return a;
}

}  // namespace

vxArray* vxCreateString(const char* utf8) {
  if (!utf8) return vxCreateCharArray(0, nullptr);
  return createCharRow(utf8ToUtf16(utf8));
}

std::string vxArrayToStdString(const vxArray* array) {
  assert(array && "array required");
  std::u16string_view text;
  if (!textOf(*array, /*anyCharShape=*/false, text)) raiseNotText(*array);
  return utf16ToUtf8(text);
}

char* vxCreateCStrFromArray(const vxArray* array) {
  assert(array && "array required");
  std::u16string_view text;
  if (!textOf(*array, /*anyCharShape=*/false, text)) return nullptr;
  const std::string utf8 = utf16ToUtf8(text);
  auto* out = static_cast<char*>(vxMallocEx(utf8.size() + 1));
  std::memcpy(out, utf8.c_str(), utf8.size() + 1);
  return out;
}

namespace matrix {

unique_vxArray create(const char16_t* text, std::size_t length) {
  assert((text || length == 0) && "text missing");
  return from_vantel(createCharRow(std::u16string_view(text, length)));
}

unique_vxArray create(std::u16string_view text) { return from_vantel(createCharRow(text)); }

std::u16string get_ustring(const vxArray* array) {
  assert(array && "array required");
  std::u16string_view text;
  if (!textOf(*array, /*anyCharShape=*/true, text)) raiseNotText(*array);
  return std::u16string(text);
}

}  // namespace matrix
