// Object arrays over the array API's object storage: element access, creation
// by class, and the class of a heterogeneous array.
#include "vcos/ObjectArray.h"

#include <algorithm>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSObjectOperations.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vx/matrix.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"

using foundation::core::except::Error;

namespace vcos::array {

namespace {

const void* storageId(COSID id) noexcept { return id.entry(); }
COSID idOfStorage(const void* id) noexcept { return COSID(static_cast<const vcos::internal::InternedEntry*>(id)); }

void requireObjectArray(const vxArray* array) {
  if (!array || !vxIsObject(array)) throw Error("VANTEL:vcos:NotAnObjectArray");
}

COSClass* requireClass(COSID classId) {
  COSClass* cls = classId ? COSClass::getClass(classId) : nullptr;
  if (!cls) throw Error("VANTEL:vcos:UnknownClass", classId.str());
  return cls;
}

}  // namespace

COSInterfacePtr getElement(const vxArray* array, std::size_t index, DeletedHandleBehavior behavior) {
  requireObjectArray(array);
  if (index >= vxGetNumberOfElements(array))
    throw Error("VANTEL:vcos:IndexOutOfRange", index + 1, vxGetNumberOfElements(array));
  const COSInterfacePtr& element = vxGetObjectElements(array)[index];
  if (element && element->isDestroyed()) {
    switch (behavior) {
      case DeletedHandleBehavior::ReturnDeleted:
        break;
      case DeletedHandleBehavior::ReturnNull:
        return COSInterfacePtr();
      case DeletedHandleBehavior::Raise:
        throw Error("VANTEL:vcos:InvalidHandle");
    }
  }
  // The caller gets a strong reference whatever the array holds.
  return COSInterfacePtr(element.get());
}

vxArray* create(const COSInterfacePtr& object) {
  if (!object) throw Error("VANTEL:vcos:NullObject");
  COSClass* cls = object->getClass();
  assert(cls && "an object without a class in an object array");
  matrix::unique_vxArray a(vxCreateObjectMatrix(1, 1, storageId(cls->getID())));
  vxGetObjectElements(a.get())[0] = object.get();
  return a.release();
}

vxArray* create(std::size_t m, std::size_t n, COSID classId) {
  requireClass(classId);
  return vxCreateObjectMatrix(m, n, storageId(classId));
}

COSClass* classOf(const vxArray* array) {
  if (!array || !vxIsObject(array)) return nullptr;
  const COSID id = idOfStorage(vxGetObjectClassID(array));
  return id ? COSClass::getClass(id) : nullptr;
}

}  // namespace vcos::array

using vcos::array::DeletedHandleBehavior;

COSInterfacePtr omGetArrayElement(const vxArray* array, std::size_t index) {
  return vcos::array::getElement(array, index, DeletedHandleBehavior::ReturnDeleted);
}

COSInterfacePtr omGetLiveArrayElement(const vxArray* array, std::size_t index) {
  return vcos::array::getElement(array, index, DeletedHandleBehavior::ReturnNull);
}

void omSetArrayElement(vxArray* array, std::size_t index, const COSInterfacePtr& object) {
  if (!array || !vxIsObject(array)) throw Error("VANTEL:vcos:NotAnObjectArray");
  if (index >= vxGetNumberOfElements(array))
    throw Error("VANTEL:vcos:IndexOutOfRange", index + 1, vxGetNumberOfElements(array));
  // Assignment keeps the slot's reference type.
  vxGetObjectElements(array)[index] = object.get();
}

vxArray* omCreateVCOSScalar(const COSInterfacePtr& object) { return vcos::array::create(object); }

vxArray* omCreateVCOSMatrix(std::size_t m, std::size_t n, COSID classId) {
  return vcos::array::create(m, n, classId);
}

vxArray* omCreateVCOSMatrix(std::size_t m, std::size_t n, const char* className) {
  return vcos::array::create(m, n, COSID(className));
}

vxArray* omCreateVCOSEmpty(COSID classId) { return vcos::array::create(0, 0, classId); }

vxArray* omCreateVCOSEmpty(const char* className) { return vcos::array::create(0, 0, COSID(className)); }

bool omIsVCOS(const vxArray* array) noexcept { return array && vxIsObject(array); }

COSID omGetCOSClassID(const vxArray* array) noexcept {
  if (!omIsVCOS(array)) return COSID();
  return COSID(static_cast<const vcos::internal::InternedEntry*>(vxGetObjectClassID(array)));
}

namespace {

// The class right below "vantel.mixin.Heterogeneous" in the ancestry of
// `cls`, or null when `cls` is not heterogeneous.
COSClass* heterogeneousRoot(COSClass* cls) {
  if (!cls || !cls->isSubclassOf(vcos::builtin::names().heterogeneous)) return nullptr;
  for (COSClass* c : cls->getAncestry()) {
    const auto& supers = c->getSuperclasses();
    if (std::any_of(supers.begin(), supers.end(),
                    [](COSClass* s) { return s->getID() == vcos::builtin::names().heterogeneous; }))
      return c;
  }
  return nullptr;
}

// A new default element of the root, through its static method.
COSInterfacePtr defaultScalarElement(COSClass* root) {
  int nlhs = 1;
  COSValue out[1];
  if (!vcos::internal::callMethod(root, vcos::builtin::names().getDefaultScalarElement, COSGetPublicClient(), nlhs,
                                  out, 0, nullptr))
    throw Error("VANTEL:vcos:NoDefaultScalarElement", root->getName());
  matrix::unique_vxArray result(out[0].asPointer<vxArray>());
  if (!result || !omIsVCOS(result.get()) || vxGetNumberOfElements(result.get()) != 1)
    throw Error("VANTEL:vcos:NoDefaultScalarElement", root->getName());
  return omGetArrayElement(result.get(), 0);
}

}  // namespace

void omSetClassOfHeterogeneousArray(vxArray* array) {
  if (!omIsVCOS(array)) throw Error("VANTEL:vcos:NotAnObjectArray");
  const std::size_t n = vxGetNumberOfElements(array);
  if (n == 0) return;

  // Distinct classes of the elements; few in practice, so a vector.
  std::vector<COSClass*> classes;
  bool gaps = false;
  {
    const COSInterfacePtr* elements = vxGetObjectElements(static_cast<const vxArray*>(array));
    const COSClass* last = nullptr;  // runs of one class are common (a search's result)
    for (std::size_t i = 0; i < n; ++i) {
      COSClass* c = elements[i] ? elements[i]->getClass() : nullptr;
      if (!c) {
        gaps = true;
        continue;
      }
      if (c == last) continue;
      last = c;
      if (std::find(classes.begin(), classes.end(), c) == classes.end()) classes.push_back(c);
    }
  }

  COSClass* root = heterogeneousRoot(vcos::array::classOf(array));
  if (!root && !classes.empty()) root = heterogeneousRoot(classes.front());

  if (gaps && root) {
    for (std::size_t i = 0; i < n; ++i) {
      if (vxGetObjectElements(static_cast<const vxArray*>(array))[i]) continue;
      COSInterfacePtr filler = defaultScalarElement(root);
      omSetArrayElement(array, i, filler);
      if (COSClass* c = filler->getClass(); std::find(classes.begin(), classes.end(), c) == classes.end())
        classes.push_back(c);
    }
  }
  if (classes.empty()) return;

  auto sharedByAll = [&](COSClass* candidate) {
    return std::all_of(classes.begin(), classes.end(), [&](COSClass* c) { return c->isSubclassOf(candidate); });
  };
  COSClass* common = nullptr;
  if (root) {
    // The first ancestor of one element (nearest first) that all share,
    // never above the root.
    for (COSClass* candidate : classes.front()->getAncestry()) {
      if (!candidate->isSubclassOf(root)) continue;
      if (sharedByAll(candidate)) {
        common = candidate;
        break;
      }
    }
    if (!common) throw Error("VANTEL:vcos:NoCommonClass", root->getName());
  } else if (classes.size() == 1) {
    common = classes.front();
  } else {
    return;  // unrelated ordinary classes: the array keeps its class
  }
  vxSetObjectClassID(array, common->getID().entry());
}
