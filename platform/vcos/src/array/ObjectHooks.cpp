// The class knowledge that the class-object system lends to the array
// runtime: class names, is-a tests and heterogeneity of object arrays.
#include "vcos/src/array/ObjectHooks.h"

#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vx/vxObjectStorage.h"

namespace vcos::array {

namespace {

COSID idOf(const void* classId) noexcept { return COSID(static_cast<const vcos::internal::InternedEntry*>(classId)); }

const char* className(const void* classId) { return idOf(classId).c_str(); }

bool isA(const void* classId, const char* name) {
  const COSID id = idOf(classId);
  if (!id || !name) return false;
  COSClass* cls = COSClass::getClass(id);
  return cls && cls->isSubclassOf(COSID(name));
}

bool isHeterogeneous(const void* classId) {
  const COSID id = idOf(classId);
  COSClass* cls = id ? COSClass::getClass(id) : nullptr;
  return cls && cls->isSubclassOf(builtin::names().heterogeneous);
}

}  // namespace

void installObjectHooks() {
  vxObjectHooks hooks;
  hooks.className = &className;
  hooks.isA = &isA;
  hooks.isHeterogeneous = &isHeterogeneous;
  vxSetObjectHooks(hooks);
}

}  // namespace vcos::array
