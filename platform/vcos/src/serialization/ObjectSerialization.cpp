#include "vcos/ObjectSerialization.h"

#include <utility>
#include <vector>

#include "foundation/core/except/IMsgIDException.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClient.h"
#include "vcos/COSInterface.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/COSPropInfo.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/COSVisitor.h"
#include "vcos/ObjectArray.h"
#include "vcos/ObjectCalls.h"
#include "vx/matrix.h"
#include "vx/vxCreate.h"
#include "vx/vxStruct.h"

namespace object_serialization {

namespace {

struct Registered {
  COSID classId;
  ElementDeserializer deserializer;
};

// Few classes register; the list is searched per restored object.
std::vector<Registered>& registry() {
  static std::vector<Registered> list;
  return list;
}

// The deserializer of the nearest registered class of `cls`, or null.
const ElementDeserializer* deserializerOf(const COSClass* cls) {
  const Registered* best = nullptr;
  for (const Registered& r : registry()) {
    if (cls->getID() != r.classId && !cls->isSubclassOf(r.classId)) continue;
    if (!best) {
      best = &r;
      continue;
    }
    // The more derived of the two wins.
    const COSClass* candidate = COSClass::getClass(r.classId);
    if (candidate && candidate->isSubclassOf(best->classId)) best = &r;
  }
  return best ? &best->deserializer : nullptr;
}

// With no deserializer: each element onto the property of its name, as the
// serializer restores any object; what does not fit is passed over.
void setElements(const COSInterfacePtr& object, const ElementBasedContent& content) {
  for (std::size_t i = 0; i < content.size(); ++i) {
    const COSPropInfo* property = object->getClass()->findPropertyExact(COSID(content.nameAt(i)));
    if (!property || property->isTransient()) continue;
    const COSDataTypePtr type = property->getDataType();
    COSTypeConversion* conversion = type ? COSTypeRepository::getArrayConversion(*type, /*toArray=*/false) : nullptr;
    const COSValue saved(const_cast<vxArray*>(content.valueAt(i)));
    try {
      if (!conversion) {
        vcos::omCopyPropertyWithNoPermissionCheck(object, property, saved);
        continue;
      }
      const COSValue converted = conversion->convert(saved);
      try {
        vcos::omCopyPropertyWithNoPermissionCheck(object, property, converted);
      } catch (...) {
        type->destroy(converted);
        throw;
      }
      type->destroy(converted);
    } catch (const foundation::core::except::IMsgIDException&) {
      // A value that no longer fits: the other elements load.
    }
  }
}

}  // namespace

void setElementDeserializer(COSID classId, ElementDeserializer deserializer) {
  std::vector<Registered>& list = registry();
  for (auto it = list.begin(); it != list.end(); ++it) {
    if (it->classId != classId) continue;
    if (deserializer)
      it->deserializer = std::move(deserializer);
    else
      list.erase(it);
    return;
  }
  if (deserializer) list.push_back({classId, std::move(deserializer)});
}

vxArray* collectElements(const COSInterfacePtr& object) {
  if (!object) return nullptr;
  object->checkValid();
  matrix::unique_vxArray elements(vxCreateStructMatrix(1, 1, 0, nullptr));
  class Collect final : public COSVisitor {
   public:
    Collect(COSInterface* object, vxArray* elements) : object_(object), elements_(elements) {}
    bool visitProperty(COSClass*, COSPropInfo* property) override {
      if (property->isTransient() || property->isDependent()) return true;
      const char* name = property->getName();
      // A property overridden in a subclass arrives once per defining class.
      if (vxGetFieldNumber(elements_, name) >= 0) return true;
      const COSDataTypePtr type = property->getDataType();
      const bool isArray = !type || type->isVANTELArrayType();
      COSTypeConversion* conversion = isArray ? nullptr : COSTypeRepository::getArrayConversion(*type, /*toArray=*/true);
      if (!isArray && !conversion) return true;
      const COSValue read = property->getValue(object_);
      matrix::unique_vxArray array;
      try {
        if (isArray) {
          if (const auto* a = read.asPointer<const vxArray>()) array.reset(vxCreateSharedDataCopy(a));
        } else {
          array.reset(conversion->convert(read).asPointer<vxArray>());
        }
      } catch (...) {
        property->releaseValue(object_, read);
        throw;
      }
      property->releaseValue(object_, read);
      if (!array) return true;
      vxSetFieldByNumber(elements_, 0, vxAddField(elements_, name), array.release());
      return true;
    }

   private:
    COSInterface* object_;
    vxArray* elements_;
  } collect(object.get(), elements.get());
  object->getClass()->acceptPropertyVisitor(collect);
  return elements.release();
}

void customizeAndDeserialize(const COSInterfacePtr& object, COSClass* cls, COSValue value,
                             const COSDataTypePtr& /*type*/) {
  if (!object || !cls) return;
  object->checkValid();
  const ElementBasedContent content(value.asPointer<const vxArray>());
  if (const ElementDeserializer* deserializer = deserializerOf(cls))
    (*deserializer)(object, content);
  else
    setElements(object, content);
  if (object->isDestroyed() || object->isBeingDestroyed()) return;
  static const COSID finalize("finalizeIncomingObject");
  if (!cls->findMethod(finalize)) return;
  matrix::unique_vxArray self(omCreateVCOSScalar(object));
  const vxArray* in[1] = {self.get()};
  vxArray* out[1] = {nullptr};
  omCallMethod(cls->getID(), finalize, COSGetPublicClient(), 1, out, 1, in, false);
  if (out[0]) matrix::destroyArray(out[0]);
}

}  // namespace object_serialization
