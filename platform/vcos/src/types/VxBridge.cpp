// The class-object system's side of the array runtime: the class knowledge
// that object arrays need (name, is-a, heterogeneous), and get and set of a
// property of an array element by name through the public client path, with
// the value converted between the property's type and an array.
#include "vcos/src/class/ClassRegistry.h"
#include "vcos/src/core/Messages.h"
#include "foundation/core/except/Error.h"
#include "vcos/COSClass.h"
#include "vcos/COSDataType.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxProperty.h"
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

COSInterface* elementAt(const vxArray* array, vxIndex index, const char* name) {
  if (!array || !vxIsObject(array) || index >= vxGetNumberOfElements(array))
    throw Error(vcos::msg::InvalidHandle);
  COSInterface* o = vxGetObjectElements(array)[index].get();
  if (!o) throw Error(vcos::msg::InvalidHandle);
  o->checkValid();
  (void)name;
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
  COSInterface* o = elementAt(array, index, propertyName);
  COSPropInfo* p = propertyOf(o, propertyName);
  COSDataTypePtr type = p->getDataType();
  COSValue v = o->getPropertyValue(COSGetPublicClient(), p);
  if (type->isVANTELArrayType()) return v.asPointer<vxArray>();
  struct Release {
    COSInterface* o;
    COSPropInfo* p;
    COSValue v;
    ~Release() { o->releasePropertyValue(COSGetPublicClient(), p, v); }
  } release{o, p, v};
  return conversionFor(type, /*toArray=*/true)->convert(v).asPointer<vxArray>();
}

void vxCheckPropertyValue(const vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index, propertyName);
  COSPropInfo* p = propertyOf(o, propertyName);
  COSDataTypePtr type = p->getDataType();
  if (type->isVANTELArrayType()) {
    type->checkValue(COSValue(value), /*raise=*/true);
    return;
  }
  COSValue converted = conversionFor(type, /*toArray=*/false)->convert(COSValue(value));
  struct Destroy {
    const COSDataTypePtr& t;
    COSValue v;
    ~Destroy() { t->destroy(v); }
  } destroy{type, converted};
  type->checkValue(converted, /*raise=*/true);
}

void vxSetProperty(vxArray* array, vxIndex index, const char* propertyName, const vxArray* value) {
  COSInterface* o = elementAt(array, index, propertyName);
  COSPropInfo* p = propertyOf(o, propertyName);
  COSDataTypePtr type = p->getDataType();
  if (type->isVANTELArrayType()) {
    o->setPropertyValue(COSGetPublicClient(), p, COSValue(value));
    return;
  }
  COSValue converted = conversionFor(type, /*toArray=*/false)->convert(COSValue(value));
  struct Destroy {
    const COSDataTypePtr& t;
    COSValue v;
    ~Destroy() { t->destroy(v); }
  } destroy{type, converted};
  o->setPropertyValue(COSGetPublicClient(), p, converted);
}
