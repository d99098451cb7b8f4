// The walk of findobj: the starting objects and their descendants in
// pre-order, children newest first, each object tested against the compiled
// query.
#include "vcos/Findobj.h"

#include <unordered_set>
#include <vector>

#include "foundation/core/except/Error.h"
#include "vcos/COSDataType.h"  // before COSClass.h: COSDataTypePtr needs it complete
#include "vcos/COSClass.h"
#include "vcos/COSClassInfo.h"
#include "vcos/ObjectArray.h"
#include "vcos/src/builtin/BuiltinNames.h"
#include "vcos/src/findobj/FindobjQuery.h"
#include "vx/matrix.h"
#include "vx/vxObjectStorage.h"
#include "vx/vxQuery.h"

namespace vcos {

namespace {

struct Pending {
  COSInterfacePtr object;  // strong: a -function callback may delete objects meanwhile
  double depth;
};

// Pushes the children of `object` so that the newest is popped first.
void pushChildren(COSInterface* object, double depth, std::vector<Pending>& stack,
                  std::vector<COSInterfacePtr>& scratch) {
  COSClass* cls = object->getClass();
  COSClassInfo* info = cls ? cls->getClassInfo() : nullptr;
  if (info && info->usesCustomChildrenList()) {
    scratch.clear();
    info->getChildrenOfInstance(object, scratch);  // newest first
    for (auto it = scratch.rbegin(); it != scratch.rend(); ++it) stack.push_back({std::move(*it), depth});
    return;
  }
  for (COSInterface* c = object->getOldestChild(); c; c = c->getNewerSibling()) stack.push_back({COSInterfacePtr(c), depth});
}

bool searchable(COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

}  // namespace

vxArray* findobj(const vxArray* handles, int nargs, const vxArray* const args[]) {
  if (!omIsVCOS(handles)) throw foundation::core::except::Error("VANTEL:vcos:findobj:NotHandles");
  search::Query query(nargs, args);
  const double maxDepth = query.depth();

  std::vector<COSInterfacePtr> found;
  std::vector<Pending> stack;
  std::vector<COSInterfacePtr> scratch;
  const std::size_t starts = vxGetNumberOfElements(handles);
  // Only several starting objects can reach one object twice.
  std::unordered_set<COSInterface*> seen;
  const bool dedupe = starts > 1;

  const COSInterfacePtr* elements = vxGetObjectElements(handles);
  for (std::size_t s = 0; s < starts; ++s) {
    stack.clear();
    stack.push_back({COSInterfacePtr(elements[s].get()), 0});
    while (!stack.empty()) {
      Pending next = std::move(stack.back());
      stack.pop_back();
      COSInterface* object = next.object.get();
      if (!searchable(object)) continue;
      if (dedupe && !seen.insert(object).second) continue;
      if (query.matches(object)) found.push_back(next.object);
      if (next.depth < maxDepth && searchable(object)) pushChildren(object, next.depth + 1, stack, scratch);
    }
  }

  if (found.empty()) {
    COSID cls = omGetCOSClassID(handles);
    return omCreateVCOSMatrix(0, 1, cls ? cls : builtin::names().handle);
  }
  matrix::unique_vxArray result(omCreateVCOSMatrix(found.size(), 1, builtin::names().handle));
  COSInterfacePtr* out = vxGetObjectElements(result.get());
  for (std::size_t i = 0; i < found.size(); ++i) out[i] = std::move(found[i]);
  omSetClassOfHeterogeneousArray(result.get());
  return result.release();
}

}  // namespace vcos
