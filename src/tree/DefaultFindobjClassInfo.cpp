// The children that findobj sees below a graphics object: its public
// "Children".
#include "sgutils/tree/DefaultFindobjClassInfo.h"

#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSCasts.h"
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/ObjectArray.h"
#include "vx/vx.h"

namespace sgutils {

namespace {
bool findAll = false;

const COSID& childrenName() {
  static const COSID id("Children");
  return id;
}
}  // namespace

void DefaultFindobjClassInfo::setFindAllObjects(bool on) noexcept { findAll = on; }
bool DefaultFindobjClassInfo::getFindAllObjects() noexcept { return findAll; }

bool DefaultFindobjClassInfo::usesCustomChildrenList() const { return !findAll; }

const COSPropInfo* DefaultFindobjClassInfo::childrenProperty(COSInterface* instance) {
  const COSClass* cls = instance->getClass();
  if (cls != resolvedFor_) {
    resolvedFor_ = cls;
    children_ = cls ? cls->findPropertyExact(childrenName()) : nullptr;
  }
  if (children_) return children_;
  COSInterfacePtr dynamic;  // a "Children" added to this object alone
  instance->findDynamicProperty(dynamic, childrenName());
  return dynamic ? cosiToProp(dynamic.get()) : nullptr;
}

void DefaultFindobjClassInfo::getChildrenOfInstance(COSInterface* instance, std::vector<COSInterfacePtr>& out) {
  const COSPropInfo* property = childrenProperty(instance);
  if (!property || property->isBeingDestroyed()) return;
  const COSInterfacePtr holdProperty(const_cast<COSPropInfo*>(property));
  const COSValue value = instance->getPropertyValue(COSGetPublicClient(), property);
  struct Release {
    COSInterface* object;
    const COSPropInfo* property;
    COSValue value;
    ~Release() { object->releasePropertyValue(COSGetPublicClient(), property, value); }
  } release{instance, property, value};
  if (instance->isDestroyed() || property->isBeingDestroyed()) return;

  // The value as an array: array types are arrays already.
  const COSDataTypePtr type = property->getDataType();
  matrix::unique_vxArray converted;
  const vxArray* array = nullptr;
  if (!type || type->isVANTELArrayType()) {
    array = value.asPointer<const vxArray>();
  } else if (const COSTypeConversion* toArray = COSTypeRepository::getArrayConversion(*type, true)) {
    converted.reset(toArray->convert(value).asPointer<vxArray>());
    array = converted.get();
  }
  if (!array || vxIsEmpty(array) || !omIsVCOS(array)) return;
  const std::size_t n = vxGetNumberOfElements(array);
  out.reserve(out.size() + n);
  for (std::size_t i = 0; i < n; ++i) out.push_back(omGetArrayElement(array, i));
}

}  // namespace sgutils
