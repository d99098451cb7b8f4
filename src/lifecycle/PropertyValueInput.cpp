// Constructor input: name-value pairs, a cell of names with a cell of values,
// and structs, each set through the client path after the name is resolved
// and the value converted to the property's type. Names like defaults and the
// special words are handed to the parts that own them (FrameHooks.h).
#include <string>

#include "foundation/core/except/Error.h"
#include "sgutils/startup/FrameHooks.h"
#include "sgutils/lifecycle/SGHandle.h"
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ConvertedValue.h"
#include "vx/matrix.h"
#include "vx/vxCell.h"
#include "vx/vxQuery.h"
#include "vx/vxStruct.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace {

[[noreturn]] void raiseInvalidArgument() {
  matrix::detail::do_legacy_vx_error(Error("VANTEL:HandleCtor:InvalidArgument"));
}

bool isText(const vxArray* value) { return vxIsChar(value) || vxIsA(value, "string"); }

// A char row or a 1-by-1 string: the form in which a word can be given.
bool isScalarText(const vxArray* value) {
  if (vxIsChar(value)) return vxGetM(value) == 1 || vxIsEmpty(value);
  return vxIsString(value) && vxIsScalar(value);
}

// Array-valued types without a conversion take the array itself.
COSTypeConversion* conversionFromArray(const COSDataTypePtr& type) {
  return COSTypeRepository::getArrayConversion(*type, /*toArray=*/false);
}

}  // namespace

void SGHandle::setPVPairs(const COSClient* client, const COSInterfacePtr& object, int n, const COSValue* values) {
  if (n < 1) return;
  auto arrayAt = [values](int i) { return values[i].asPointer<const vxArray>(); };
  for (int i = 0; i < n;) {
    const vxArray* input = arrayAt(i);
    if (input && isText(input)) {
      if (i + 1 >= n) raiseInvalidArgument();
      const std::string name = vxArrayToStdString(input);
      setProperty(client, object, name.c_str(), arrayAt(i + 1));
      i += 2;
    } else if (input && vxIsCell(input)) {
      if (i + 1 >= n) raiseInvalidArgument();
      const vxArray* cellValues = arrayAt(i + 1);
      if (!cellValues || !vxIsCell(cellValues)) raiseInvalidArgument();
      const vxSize count = vxGetNumberOfElements(input);
      if (count != vxGetNumberOfElements(cellValues))
        matrix::detail::do_legacy_vx_error(Error("VANTEL:HandleCtor:pvpairmismatch"));
      for (vxSize k = 0; k < count; ++k) {
        const vxArray* nameCell = vxGetCell(input, k);
        if (!nameCell || !isText(nameCell)) raiseInvalidArgument();
        const std::string name = vxArrayToStdString(nameCell);
        setProperty(client, object, name.c_str(), vxGetCell(cellValues, k));
      }
      i += 2;
    } else if (input && vxIsStruct(input)) {
      if (!vxIsEmpty(input) && !vxIsScalar(input)) raiseInvalidArgument();
      if (!vxIsEmpty(input)) {
        const int fields = vxGetNumberOfFields(input);
        for (int f = 0; f < fields; ++f)
          setProperty(client, object, vxGetFieldNameByNumber(input, f), vxGetFieldByNumber(input, 0, f));
      }
      i += 1;
    } else {
      raiseInvalidArgument();
    }
  }
}

void SGHandle::setProperty(const COSClient* client, const COSInterfacePtr& object, const char* name,
                           const vxArray* value) {
  if (auto setDefault = sgutils::frameHooks().defaultNameSetter) {
    if (setDefault(object, name, value)) return;
  }
  const COSID id(name);
  COSClass* cls = object->getClass();
  COSPropInfo* property = cls->findProperty(id);
  if (!property) {
    COSInterfacePtr dynamic;
    object->findDynamicProperty(dynamic, id);
    property = cosiToProp(dynamic.get());
  }
  if (!property) throw Error("VANTEL:sg_graphics:invalidCtorProperty", name, cls->getName());
  // The instance's own view of the property.
  if (COSPropInfo* own = object->findPropertyInfo(id)) property = own;

  COSDataTypePtr type = property->getDataType();
  static const COSID heterogeneous("vantel.mixin.Heterogeneous");
  if (type.getID() == heterogeneous) {
    object->setPropertyValue(client, property, COSValue(value));
    return;
  }
  COSTypeConversion* conversion = conversionFromArray(type);
  if (!value) return;

  if (isScalarText(value)) {
    if (auto words = sgutils::frameHooks().wordRules) {
      const std::string word = vxArrayToStdString(value);
      if (words(client, object, property, word.c_str())) return;
    }
  }

  if (!conversion) {
    // An array-typed property takes the array as it is.
    if (type->isVANTELArrayType()) {
      object->setPropertyValue(client, property, COSValue(value));
      return;
    }
    throw Error("VANTEL:vcos:ConversionFailed", "any", type.getID().str());
  }
  const ConvertedValue typed(type, conversion->convert(COSValue(value)));
  object->setPropertyValue(client, property, typed.get());
}
