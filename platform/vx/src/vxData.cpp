// Element data of numeric, logical, char, string and function-handle arrays.
// Readers never unshare; writers do, before handing out a pointer.
#include "vx/vxData.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include "FunctionHandlePayload.h"
#include "StringPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using namespace vx::impl;

namespace {

const vxArray& checked(const vxArray* array, vxClassID id, const char* expected) {
  assert(array && "array required");
  if (array->cls() != id) vx::impl::raiseWrongClass(*array, expected);
  return *array;
}

const vxArray& checkedReal(const vxArray* array, vxClassID id, const char* expected) {
  const vxArray& a = checked(array, id, expected);
  if (a.has(vxArray::kComplex)) raiseWrongClass(a, expected);
  return a;
}

template <class T>
double firstAsDouble(const void* data) {
  return static_cast<double>(*static_cast<const T*>(data));
}

const StringPayload& strings(const vxArray* array) {
  return *static_cast<const StringPayload*>(checked(array, vxSTRING_CLASS, "string").payload.get());
}

}  // namespace

const void* vxGetData(const vxArray* array) {
  assert(array && "array required");
  if (!isRawStorage(array->cls())) raiseWrongClass(*array, "numeric, logical or char");
  return rawData(*array);
}

void* vxGetData(vxArray* array) {
  vxGetData(static_cast<const vxArray*>(array));  // class check
  return rawDataForWrite(*array);
}

const double* vxGetPr(const vxArray* array) {
  return static_cast<const double*>(rawData(checkedReal(array, vxDOUBLE_CLASS, "real double")));
}

double* vxGetPr(vxArray* array) {
  checkedReal(array, vxDOUBLE_CLASS, "real double");
  return static_cast<double*>(rawDataForWrite(*array));
}

const std::complex<double>* vxGetComplexDoubles(const vxArray* array) {
  const vxArray& a = checked(array, vxDOUBLE_CLASS, "complex double");
  if (!a.has(vxArray::kComplex)) raiseWrongClass(a, "complex double");
  return static_cast<const std::complex<double>*>(rawData(a));
}

std::complex<double>* vxGetComplexDoubles(vxArray* array) {
  vxGetComplexDoubles(static_cast<const vxArray*>(array));  // class check
  return static_cast<std::complex<double>*>(rawDataForWrite(*array));
}

const bool* vxGetLogicals(const vxArray* array) {
  return static_cast<const bool*>(rawData(checked(array, vxLOGICAL_CLASS, "logical")));
}

bool* vxGetLogicals(vxArray* array) {
  checked(array, vxLOGICAL_CLASS, "logical");
  return static_cast<bool*>(rawDataForWrite(*array));
}

const vxChar* vxGetChars(const vxArray* array) {
  return static_cast<const vxChar*>(rawData(checked(array, vxCHAR_CLASS, "char")));
}

vxChar* vxGetChars(vxArray* array) {
  checked(array, vxCHAR_CLASS, "char");
  return static_cast<vxChar*>(rawDataForWrite(*array));
}

double vxGetScalar(const vxArray* array) {
  assert(array && "array required");
  const vxClassID id = array->cls();
  if (!isRawStorage(id)) raiseWrongClass(*array, "numeric, logical or char");
  if (numelOf(*array) == 0) raiseEmptyScalar();
  // The real part comes first in a complex element.
  const void* p = rawData(*array);
  switch (id) {
    case vxLOGICAL_CLASS: return *static_cast<const bool*>(p) ? 1.0 : 0.0;
    case vxCHAR_CLASS: return firstAsDouble<char16_t>(p);
    case vxDOUBLE_CLASS: return firstAsDouble<double>(p);
    case vxSINGLE_CLASS: return firstAsDouble<float>(p);
    case vxINT8_CLASS: return firstAsDouble<std::int8_t>(p);
    case vxUINT8_CLASS: return firstAsDouble<std::uint8_t>(p);
    case vxINT16_CLASS: return firstAsDouble<std::int16_t>(p);
    case vxUINT16_CLASS: return firstAsDouble<std::uint16_t>(p);
    case vxINT32_CLASS: return firstAsDouble<std::int32_t>(p);
    case vxUINT32_CLASS: return firstAsDouble<std::uint32_t>(p);
    case vxINT64_CLASS: return firstAsDouble<std::int64_t>(p);
    case vxUINT64_CLASS: return firstAsDouble<std::uint64_t>(p);
    default: break;  // not raw storage; refused above
  }
  assert(false && "raw-storage class without a scalar reading");
  return 0.0;
}

int vxGetScalarInt(const vxArray* array) {
  const double v = std::trunc(vxGetScalar(array));
  if (!(v >= static_cast<double>(std::numeric_limits<int>::min()) &&
        v <= static_cast<double>(std::numeric_limits<int>::max())))
    raiseIntegerOutOfRange(v);
  return static_cast<int>(v);
}

std::optional<std::u16string> vxGetStringElement(const vxArray* array, vxIndex index) {
  const StringPayload& s = strings(array);
  if (index >= s.strings.size()) raiseIndexOutOfRange(index, s.strings.size());
  return s.strings[index];
}

void vxSetStringElement(vxArray* array, vxIndex index, std::optional<std::u16string> value) {
  const vxSize numel = strings(array).strings.size();
  if (index >= numel) raiseIndexOutOfRange(index, numel);
  makeWritable(*array);
  static_cast<StringPayload*>(array->payload.get())->strings[index] = std::move(value);
}

std::shared_ptr<const vxFunctionHandleData> vxGetFunctionHandle(const vxArray* array) {
  return static_cast<const FunctionHandlePayload*>(
             checked(array, vxFUNCTION_CLASS, "function_handle").payload.get())
      ->data;
}
