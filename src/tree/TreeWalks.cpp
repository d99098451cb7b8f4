// Walks up the object tree.
#include "sgutils/tree/TreeWalks.h"

#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
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

// Gives a value read through the client back on every exit.
class ReadScope {
 public:
  ReadScope(COSInterface* object, const COSPropInfo* property)
      : object_(object), property_(property), value_(object->getPropertyValue(COSGetPublicClient(), property)) {}
  ~ReadScope() { object_->releasePropertyValue(COSGetPublicClient(), property_, value_); }
  ReadScope(const ReadScope&) = delete;
  ReadScope& operator=(const ReadScope&) = delete;
  COSValue value() const noexcept { return value_; }

 private:
  COSInterface* object_;
  const COSPropInfo* property_;
  COSValue value_;
};

COSInterfacePtr parentFromProperty(const COSInterfacePtr& object) {
  static const COSID parentName("Parent");
  const COSPropInfo* property = object->findPropertyInfo(parentName);
  if (!property) return {};
  ReadScope read(object.get(), property);  // a deleted object raises its invalid-handle error here
  if (object->isDestroyed()) return {};
  const COSDataTypePtr type = property->getDataType();
  if (!type || type->isVANTELArrayType()) {
    auto* value = read.value().asPointer<const vxArray>();
    if (value && omIsVCOS(value) && !vxIsEmpty(value)) return omGetArrayElement(value, 0);
    return {};
  }
  // A numeric handle.
  const double number = read.value().asDouble();
  if (number == -1.0) return {};
  static const COSID from("double"), to("vantel.graphics.datatype.COSInterface");
  const COSTypeConversion* conversion = COSTypeRepository::getConversion(from, to);
  if (!conversion) return {};
  // The conversion hands out a strong reference of its own: adopt it.
  auto* found = conversion->convert(read.value()).asPointer<COSInterface>();
  COSInterfacePtr result(found);
  if (found) found->releaseReference(COSStrongReference);
  return result;
}

}  // namespace

bool isOfAnyClass(const COSInterfacePtr& object, const std::vector<const COSClass*>& classes) {
  if (!object || object->isDestroyed()) return false;
  const COSClass* cls = object->getClass();
  if (!cls) return false;
  for (const COSClass* c : classes)
    if (c && cls->isSubclassOf(c->getID())) return true;
  return false;
}

COSInterfacePtr getParent(const COSInterfacePtr& object, bool useTreeLink) {
  if (!object) return {};
  if (useTreeLink) {
    COSInterfacePtr owner;
    object->getOwner(owner);
    return owner;
  }
  return parentFromProperty(object);
}

COSInterfacePtr getAncestor(const COSInterfacePtr& object, const COSClass* cls, bool useTreeLink) {
  // The one-class walk of the mixins (the figure of an object, the containers
  // of the current axes): no list of classes is built.
  const auto matches = [cls](const COSInterfacePtr& at) {
    const COSClass* own = at->isDestroyed() ? nullptr : at->getClass();
    return cls && own && own->isSubclassOf(cls->getID());
  };
  COSInterfacePtr current = object;
  while (current && !matches(current)) current = getParent(current, useTreeLink);
  return current;
}

COSInterfacePtr getAncestor(const COSInterfacePtr& object, const std::vector<const COSClass*>& classes,
                            bool useTreeLink) {
  COSInterfacePtr current = object;
  while (current && !isOfAnyClass(current, classes)) current = getParent(current, useTreeLink);
  return current;
}

COSInterfacePtr getTopLevelAncestor(const COSInterfacePtr& object, const std::vector<const COSClass*>& classes,
                                    bool useTreeLink) {
  COSInterfacePtr found;
  for (COSInterfacePtr current = object; current; current = getParent(current, useTreeLink))
    if (isOfAnyClass(current, classes)) found = current;
  return found;
}

}  // namespace sgutils
