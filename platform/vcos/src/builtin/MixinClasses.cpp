// "dynamicprops" (addprop) and "vantel.mixin.Heterogeneous" (the hook that
// fills gaps of heterogeneous arrays).
#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSGenericProp.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinMethod.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/builtin/ClassMembers.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxQuery.h"
#include "vx/vxText.h"

using foundation::core::except::Error;

namespace vcos::builtin {

namespace {

// addprop(object, name): a public property of type "any" on this instance
// alone, stored when the object is saved, holding [] until it is set; gives
// the new property object.
void addpropMethod(const COSClient*, int& nlhs, vxArray* plhs[], int, const vxArray* prhs[]) {
  COSInterfacePtr object = omGetLiveArrayElement(prhs[0], 0);
  if (!object || vxGetNumberOfElements(prhs[0]) != 1) throw Error("VANTEL:vcos:addprop:NeedsScalarObject");
  const vxArray* name = prhs[1];
  if (!name || !vxIsChar(name) || vxGetM(name) != 1) throw Error("VANTEL:vcos:addprop:BadName");
  const std::string text = vxArrayToStdString(name);
  if (text.empty()) throw Error("VANTEL:vcos:addprop:BadName");
  COSInterfacePtr property(COSGenericProp::createNewDynamicProp(text, object->getClass()->getID(), names().any));
  auto* added = static_cast<COSPropInfo*>(property.get());
  object->addDynamicProperty(added);
  const matrix::unique_vxArray empty(vxCreateDoubleMatrix(0, 0, vxREAL));
  added->setValue(object.get(), COSValue(empty.get()));
  if (nlhs > 0 && property->getClass()) plhs[0] = omCreateVCOSScalar(property);
}

// The root of a heterogeneous hierarchy overrides this with a static method
// of the same name that gives a new default element.
void noDefaultScalarElement(const COSClient*, int&, vxArray*[], int, const vxArray*[]) {
  throw Error("VANTEL:vcos:NoDefaultScalarElement", "vantel.mixin.Heterogeneous");
}

constexpr Method::Row kDynamicpropsMethods[] = {
    {"addprop", &addpropMethod, "Adds a property to this object alone.", 2, 2, 1, false},
};

constexpr Method::Row kHeterogeneousMethods[] = {
    {"getDefaultScalarElement", &noDefaultScalarElement, "The element that fills gaps in arrays of the hierarchy.",
     0, 0, 1, true},
};

}  // namespace

void addDynamicpropsMembers(COSClass* cls) { Method::addAll(cls, kDynamicpropsMethods); }
void addHeterogeneousMembers(COSClass* cls) { Method::addAll(cls, kHeterogeneousMethods); }

}  // namespace vcos::builtin
