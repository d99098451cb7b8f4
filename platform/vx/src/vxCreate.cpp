// Creation of every class of array.
#include "vx/vxCreate.h"

#include <cstring>

#include "CellPayload.h"
#include "FunctionHandlePayload.h"
#include "StringPayload.h"
#include "StructPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using namespace vx::impl;

namespace {

vxArray* createStruct(Shape&& shape, int nfields, const char** fieldNames) {
  assert((nfields == 0 || fieldNames) && "field names missing");
  auto payload = makePayload<StructPayload>(shape.numel);
  auto* fields = static_cast<StructPayload*>(payload.get());
  for (int i = 0; i < nfields; ++i) {
    if (!isValidFieldName(fieldNames[i])) raiseInvalidFieldName(fieldNames[i]);
    fields->add(fieldNames[i]);
  }
  auto a = newHeader(vxSTRUCT_CLASS, false, std::move(shape));
  a->payload = std::move(payload);
  return a.release();
}

vxArray* createCell(Shape&& shape) {
  auto payload = makePayload<CellPayload>(shape.numel);
  auto a = newHeader(vxCELL_CLASS, false, std::move(shape));
  a->payload = std::move(payload);
  return a.release();
}

}  // namespace

vxArray* vxCreateDoubleMatrix(vxSize m, vxSize n, vxComplexity complexity) {
  return createRaw(vxDOUBLE_CLASS, complexity == vxCOMPLEX, makeShape(m, n));
}

vxArray* vxCreateDoubleScalar(double value) {
  vxArray* a = createRaw(vxDOUBLE_CLASS, false, makeShape(1, 1));
  std::memcpy(a->inline_, &value, sizeof value);
  return a;
}

vxArray* vxCreateNumericMatrix(vxSize m, vxSize n, vxClassID classId, vxComplexity complexity) {
  if (!classFacts(classId).numeric) raiseNotNumericClass(classId);
  return createRaw(classId, complexity == vxCOMPLEX, makeShape(m, n));
}

vxArray* vxCreateNumericArray(vxSize ndim, const vxSize* dims, vxClassID classId, vxComplexity complexity) {
  if (!classFacts(classId).numeric) raiseNotNumericClass(classId);
  return createRaw(classId, complexity == vxCOMPLEX, makeShape(ndim, dims));
}

vxArray* vxCreateLogicalScalar(bool value) {
  vxArray* a = createRaw(vxLOGICAL_CLASS, false, makeShape(1, 1));
  a->inline_[0] = value ? 1 : 0;
  return a;
}

vxArray* vxCreateLogicalMatrix(vxSize m, vxSize n) { return createRaw(vxLOGICAL_CLASS, false, makeShape(m, n)); }

vxArray* vxCreateLogicalArray(vxSize ndim, const vxSize* dims) {
  return createRaw(vxLOGICAL_CLASS, false, makeShape(ndim, dims));
}

vxArray* vxCreateCharArray(vxSize ndim, const vxSize* dims) {
  return createRaw(vxCHAR_CLASS, false, makeShape(ndim, dims));
}

vxArray* vxCreateCellMatrix(vxSize m, vxSize n) { return createCell(makeShape(m, n)); }

vxArray* vxCreateCellArray(vxSize ndim, const vxSize* dims) { return createCell(makeShape(ndim, dims)); }

vxArray* vxCreateStructMatrix(vxSize m, vxSize n, int nfields, const char** fieldNames) {
  return createStruct(makeShape(m, n), nfields, fieldNames);
}

vxArray* vxCreateStructArray(vxSize ndim, const vxSize* dims, int nfields, const char** fieldNames) {
  return createStruct(makeShape(ndim, dims), nfields, fieldNames);
}

vxArray* vxCreateStringArray(vxSize m, vxSize n) {
  Shape shape = makeShape(m, n);
  auto payload = makePayload<StringPayload>(shape.numel);
  auto a = newHeader(vxSTRING_CLASS, false, std::move(shape));
  a->payload = std::move(payload);
  return a.release();
}

vxArray* vxCreateFunctionHandle(std::shared_ptr<const vxFunctionHandleData> data) {
  assert(data && "a function handle needs data");
  auto a = newHeader(vxFUNCTION_CLASS, false, makeShape(1, 1));
  a->payload = makePayload<FunctionHandlePayload>(std::move(data));
  return a.release();
}

vxFunctionHandleData::~vxFunctionHandleData() = default;
std::vector<std::pair<std::string, const vxArray*>> vxFunctionHandleData::capturedValues() const { return {}; }
