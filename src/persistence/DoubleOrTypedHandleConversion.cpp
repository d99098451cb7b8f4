// Conversions between arrays and the types named after graphics classes
// (DoubleOrTypedHandleConversion.h).
#include "sgutils/persistence/DoubleOrTypedHandleConversion.h"

#include <cmath>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "vcos/COSInterface.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"
#include "vx/vxObjectStorage.h"

using foundation::core::except::Error;

namespace sgutils {

namespace {

const char* const kPlaceholder = "vantel.graphics.GraphicsPlaceholder";

// The live object of a handle number; raises for a number that names none.
COSInterface* objectOfNumber(double number, const std::string& typeName) {
  COSInterface* object = std::isnan(number) ? nullptr : graphics::datatype::HandleNumberTable::objectFor(number);
  if (!object) throw Error("VANTEL:vcos:ConversionFailed", "double", typeName);
  return object;
}

bool isEmptyNoObject(const vxArray* a) {
  return vxIsEmpty(a) && (vxIsDouble(a) || vxIsA(a, kPlaceholder));
}

}  // namespace

DoubleOrTypedHandleConversion::DoubleOrTypedHandleConversion(COSID classId, bool substitutePlaceholder,
                                                             Direction direction, Form form)
    : classId_(classId),
      substitutePlaceholder_(substitutePlaceholder),
      direction_(direction),
      form_(form),
      typeName_(form == Form::Scalar ? classId.str() + " scalar" : classId.str()) {}

COSValue DoubleOrTypedHandleConversion::convert(COSValue from) const {
  return direction_ == Direction::FromArray ? fromArray(from) : toArray(from);
}

COSValue DoubleOrTypedHandleConversion::fromArray(COSValue from) const {
  const vxArray* a = from.asPointer<const vxArray>();
  if (!a || isEmptyNoObject(a)) return COSValue();
  if (form_ == Form::Scalar) {
    COSInterface* object = nullptr;
    if (vxIsDouble(a) && vxGetNumberOfElements(a) == 1) {
      object = objectOfNumber(vxGetScalar(a), typeName_);
    } else if (omIsVCOS(a) && vxGetNumberOfElements(a) == 1) {
      object = vxGetObjectElements(a)[0].get();
    } else {
      throw Error("VANTEL:vcos:ConversionFailed", "any", typeName_);
    }
    if (object) object->addReference(COSStrongReference);
    return COSValue(object);
  }
  // Anything but numbers passes as it is; the type checks it.
  if (!vxIsDouble(a)) return COSValue(vxCreateSharedCopyNotOnArrayList(a));
  const vxSize n = vxGetNumberOfElements(a);
  vxArray* objects = vxCreateObjectArray(vxGetNumberOfDimensions(a), vxGetDimensions(a), classId_.entry());
  try {
    const double* numbers = vxGetPr(a);
    COSInterfacePtr* out = vxGetObjectElements(objects);
    for (vxSize i = 0; i < n; ++i) out[i] = COSInterfacePtr(objectOfNumber(numbers[i], typeName_));
    if (n > 1) omSetClassOfHeterogeneousArray(objects);
  } catch (...) {
    vxDestroyArray(objects);
    throw;
  }
  return COSValue(objects);
}

COSValue DoubleOrTypedHandleConversion::toArray(COSValue from) const {
  if (from.isEmpty()) return COSValue(substitutePlaceholder_ ? omCreateVCOSEmpty(kPlaceholder) : omCreateVCOSEmpty(classId_));
  if (form_ == Form::Scalar) return COSValue(omCreateVCOSScalar(COSInterfacePtr(from.asPointer<COSInterface>())));
  return COSValue(vxCreateSharedDataCopy(from.asPointer<const vxArray>()));
}

void DoubleOrTypedHandleConversion::replaceConverters(COSID classId, bool isAbstract) {
  static const COSID any("any");
  const std::string& name = classId.str();
  const COSID types[] = {classId, COSID(name + " scalar"), COSID(name + " vector"), COSID(name + " matrix")};
  for (const COSID& type : types) {
    const Form form = type == types[1] ? Form::Scalar : Form::Array;
    // One conversion object per type name and direction; adding replaces.
    COSTypeRepository::removeConversion(any, type);
    COSTypeRepository::removeConversion(type, any);
    COSTypeRepository::addConversion(any, type,
                                     new DoubleOrTypedHandleConversion(classId, isAbstract, Direction::FromArray, form));
    COSTypeRepository::addConversion(type, any,
                                     new DoubleOrTypedHandleConversion(classId, isAbstract, Direction::ToArray, form));
  }
}

}  // namespace sgutils
