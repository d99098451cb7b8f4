// Struct arrays: fields by name and number, adding and removing fields.
// A struct owns its field values; replacing a value destroys the old one.
#include "vx/vxStruct.h"

#include "StructPayload.h"
#include "vxArrayHeader.h"
#include "vxErrors.h"

using namespace vx::impl;

namespace {

const StructPayload& fieldsOf(const vxArray* array) {
  assert(array && "array required");
  if (array->cls() != vxSTRUCT_CLASS) raiseWrongClass(*array, "struct");
  return *static_cast<const StructPayload*>(array->payload.get());
}

StructPayload& fieldsForWrite(vxArray* array) {
  fieldsOf(array);  // class check
  makeWritable(*array);
  return *static_cast<StructPayload*>(array->payload.get());
}

void checkIndex(const vxArray* array, vxIndex index) {
  const vxSize numel = numelOf(*array);
  if (index >= numel) raiseIndexOutOfRange(index, numel);
}

void checkFieldNumber(const StructPayload& s, int number) {
  if (number < 0 || number >= s.fieldCount()) raiseFieldNumberOutOfRange(number, s.fieldCount());
}

void store(vxArray* array, vxIndex index, int number, vxArray* value) {
  // Storing the value a slot already holds changes nothing; checked before
  // unsharing, which would give the slot a new header.
  if (fieldsOf(array).field(number).values[index].get() == value) return;
  ElementRef& slot = fieldsForWrite(array).field(number).values[index];
  adoptIntoContainer(value);
  slot.reset(value);
}

}  // namespace

int vxGetNumberOfFields(const vxArray* array) { return fieldsOf(array).fieldCount(); }

const char* vxGetFieldNameByNumber(const vxArray* array, int fieldNumber) {
  const StructPayload& s = fieldsOf(array);
  checkFieldNumber(s, fieldNumber);
  return s.field(fieldNumber).name.c_str();
}

int vxGetFieldNumber(const vxArray* array, const char* fieldName) {
  assert(fieldName && "field name required");
  return fieldsOf(array).find(fieldName);
}

vxArray* vxGetField(const vxArray* array, vxIndex index, const char* fieldName) {
  assert(fieldName && "field name required");
  const StructPayload& s = fieldsOf(array);
  checkIndex(array, index);
  const int number = s.find(fieldName);
  return number < 0 ? nullptr : s.field(number).values[index].get();
}

vxArray* vxGetFieldByNumber(const vxArray* array, vxIndex index, int fieldNumber) {
  const StructPayload& s = fieldsOf(array);
  checkIndex(array, index);
  checkFieldNumber(s, fieldNumber);
  return s.field(fieldNumber).values[index].get();
}

void vxSetField(vxArray* array, vxIndex index, const char* fieldName, vxArray* value) {
  const StructPayload& s = fieldsOf(array);
  checkIndex(array, index);
  int number = s.find(fieldName);
  if (number < 0) {
    if (!isValidFieldName(fieldName)) raiseInvalidFieldName(fieldName);
    number = fieldsForWrite(array).add(fieldName);
  }
  store(array, index, number, value);
}

void vxSetFieldByNumber(vxArray* array, vxIndex index, int fieldNumber, vxArray* value) {
  checkIndex(array, index);
  checkFieldNumber(fieldsOf(array), fieldNumber);
  store(array, index, fieldNumber, value);
}

int vxAddField(vxArray* array, const char* fieldName) {
  const StructPayload& s = fieldsOf(array);
  if (!isValidFieldName(fieldName)) return -1;
  const int existing = s.find(fieldName);
  if (existing >= 0) return existing;
  return fieldsForWrite(array).add(fieldName);
}

int vxAddFieldToStruct(vxArray* array, const char* fieldName) {
  assert(array && "array required");
  if (array->cls() != vxSTRUCT_CLASS) return -1;
  return vxAddField(array, fieldName);
}

void vxRemoveField(vxArray* array, int fieldNumber) {
  checkFieldNumber(fieldsOf(array), fieldNumber);
  fieldsForWrite(array).remove(fieldNumber);
}
