// The class-object system's side of the array runtime: the class knowledge
// that object arrays need (name, is-a, heterogeneous), and get and set of a
// property of an array element by name through the public client path, with
// the value converted between the property's type and an array.
#include "vcos/BorrowedPropertyValue.h"
#include "vcos/ConvertedValue.h"
#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vxCreate.h"
#include "vx/vxObjectStorage.h"
#include "vcos/VxProperty.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace vcos::internal {
namespace {

COSClass* classOf(const void* classId) {
  return COSClass::getClass(COSID(static_cast<const InternedEntry*>(classId)));
}

}  // namespace

void installArrayHooks() {
  vxObjectHooks hooks;
  hooks.className = [](const void* classId) -> const char* {
    return classId ? static_cast<const InternedEntry*>(classId)->text.c_str() : "object";
  };
  hooks.isA = [](const void* classId, const char* name) {
    COSClass* cls = classOf(classId);
    return cls && cls->isSubclassOf(COSID(name));
  };
  hooks.isHeterogeneous = [](const void* classId) {
    static const COSID root("vantel.mixin.Heterogeneous");
    COSClass* cls = classOf(classId);
    return cls && cls->isSubclassOf(root);
  };
  vxSetObjectHooks(hooks);
}

}  // namespace vcos::internal

namespace {

COSInterface* elementAt(const vxArray* array, vxIndex index) {
  if (!array || !vxIsObject(array) || index >= vxGetNumberOfElements(array))
    throw Error(vcos::msg::InvalidHandle);
  COSInterface* o = vxGetObjectElements(array)[index].get();
  if (!o) throw Error(vcos::msg::InvalidHandle);
  o->checkValid();
  return o;
}

COSPropInfo* propertyOf(COSInterface* o, const char* name) {
  COSPropInfo* p = o->findPropertyInfo(COSID(name));
  if (!p) throw Error(vcos::msg::UnknownProperty, name, o->getClass() ? o->getClass()->getName() : "");
  return p;
}

COSTypeConversion* conversionFor(const COSDataTypePtr& type, bool toArray) {
  COSTypeConversion* c = COSTypeRepository::getArrayConversion(*type, toArray);
  if (!c) {
    const std::string& id = type.getID().str();
    throw Error(vcos::msg::ConversionFailed, toArray ? id : "any", toArray ? "any" : id);
  }
  return c;
}

}  // namespace

vxArray* vxGetProperty(const vxArray* array, vxIndex index, const char* propertyName) {
  COSInterface* o = elementAt(array, index);
  return vxGetProperty(array, index, propertyOf(o, propertyName));
}

void vxCheckPropertyValue(const vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index);
  COSPropInfo* p = propertyOf(o, propertyName);
  COSDataTypePtr type = p->getDataType();
  if (type->isVANTELArrayType()) {
    type->checkValue(COSValue(value), /*raise=*/true);
    return;
  }
  const ConvertedValue converted(type, conversionFor(type, /*toArray=*/false)->convert(COSValue(value)));
  type->checkValue(converted.get(), /*raise=*/true);
}

void vxSetProperty(vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index);
  vxSetProperty(array, index, propertyOf(o, propertyName), value);
}

vxArray* vxGetProperty(const vxArray* array, vxIndex index, const COSPropInfo* property) {
  COSInterface* o = elementAt(array, index);
  COSDataTypePtr type = property->getDataType();
  const BorrowedPropertyValue v = BorrowedPropertyValue::read(o, COSGetPublicClient(), property);
  if (type->isVANTELArrayType()) {
    // A property may lend the array it stores: the caller gets a copy of its
    // own (sharing the data), and the lent value goes back through the guard.
    const vxArray* value = v.get().asPointer<const vxArray>();
    return value ? vxCreateSharedCopyNotOnArrayList(value) : nullptr;
  }
  return conversionFor(type, /*toArray=*/true)->convert(v.get()).asPointer<vxArray>();
}

void vxSetProperty(vxArray* array, vxIndex index, const COSPropInfo* property, const vxArray* value) {
  COSInterface* o = elementAt(array, index);
  COSDataTypePtr type = property->getDataType();
  if (type->isVANTELArrayType()) {
    o->setPropertyValue(COSGetPublicClient(), property, COSValue(value));
    return;
  }
  const ConvertedValue converted(type, conversionFor(type, /*toArray=*/false)->convert(COSValue(value)));
  o->setPropertyValue(COSGetPublicClient(), property, converted.get());
}
