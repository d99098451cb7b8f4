// Numbers and arrays to graphics objects (HandleConversion.h).
#include "sgutils/persistence/HandleConversion.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <string>

#include "foundation/core/except/Error.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vxData.h"
#include "vx/vxQuery.h"

namespace sgutils::handles {

namespace {

using foundation::core::except::Error;

const COSTypeConversion* numberToObject() {
  static const COSID from("double"), to("vantel.graphics.datatype.COSInterface");
  return COSTypeRepository::getConversion(from, to);
}

// The object that a number names, deleted or not, or null. The conversion
// hands out a strong reference of its own, which the pointer adopts.
COSInterfacePtr objectOfNumber(const COSTypeConversion* conversion, double number) {
  auto* found = conversion->convert(COSValue::fromDouble(number)).asPointer<COSInterface>();
  COSInterfacePtr result(found);
  if (found) found->releaseReference(COSStrongReference);
  return result;
}

std::string numberText(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::fabs(number) > DBL_MAX) return number < 0 ? "-Inf" : "Inf";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.15g", number);
  return buffer;
}

}  // namespace

COSInterfacePtr toScalarObject(const vxArray* value) {
  if (!value) return nullptr;
  if (vxGetNumberOfElements(value) > 1) throw Error("VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle");
  if (vxIsEmpty(value)) {
    if (vxIsChar(value)) throw Error("VANTEL:sg:InvalidObjectHandle");
    return nullptr;
  }
  if (vxIsDouble(value) && !vxIsComplex(value)) {
    const COSTypeConversion* conversion = numberToObject();
    if (!conversion) return nullptr;
    const double number = vxGetPr(value)[0];
    COSInterfacePtr object = objectOfNumber(conversion, number);
    if (object ? object->isDestroyed() : graphics::datatype::HandleNumberTable::isRetired(number))
      throw Error("VANTEL:sg:DeletedObjectDoubleHandle");
    if (!object) throw Error("VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle");
    return object;
  }
  if (omIsVCOS(value)) {
    COSInterfacePtr object = omGetArrayElement(value, 0);
    if (object && object->isDestroyed()) throw Error("VANTEL:sg:DeletedObject");
    return object;
  }
  throw Error("VANTEL:sg:InvalidObjectHandle");
}

matrix::unique_vxArray toObjectArray(const vxArray* numbers, bool strict) {
  const COSTypeConversion* conversion = numberToObject();
  if (!conversion) throw Error("VANTEL:graphics:DoubleHandleConversionError");
  matrix::unique_vxArray result(omCreateVCOSMatrix(vxGetM(numbers), vxGetN(numbers), "vantel.graphics.Graphics"));
  const double* pr = vxGetPr(numbers);
  const std::size_t n = vxGetNumberOfElements(numbers);
  for (std::size_t i = 0; i < n; ++i) {
    COSInterfacePtr object = objectOfNumber(conversion, pr[i]);
    if (!object) {
      if (strict) throw Error("VANTEL:graphics:CannotConvertDoubleToHandle", numberText(pr[i]));
      static const COSID placeholder("vantel.graphics.GraphicsPlaceholder");
      if (COSClass* cls = COSClass::getClass(placeholder)) object = cls->createInstance(COSGetPublicClient());
    }
    omSetArrayElement(result.get(), i, object);
  }
  omSetClassOfHeterogeneousArray(result.get());
  return result;
}

}  // namespace sgutils::handles
