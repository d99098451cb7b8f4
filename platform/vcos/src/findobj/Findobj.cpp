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

bool searchable(COSInterface* object) {
  return object && !object->isDestroyed() && !object->isBeingDestroyed();
}

// The children of one object being walked. A class with its own list gives
// a snapshot of it, and so does the tree's chain when the conditions call
// functions, which may delete objects of the level being walked. Otherwise
// the chain is followed in place, newest first, one sibling link at a time,
// so a wide level costs no copy. Every object in a frame is held strongly,
// so code run by a condition (a get listener) never leaves a dangling
// pointer; a chain whose current child was taken out of it meanwhile ends
// there.
struct Frame {
  COSInterfacePtr parent;
  double depth = 0;  // of the children
  bool chain = true;
  std::vector<COSInterfacePtr> list;  // own lists; capacity kept across uses
  std::size_t next = 0;
  COSInterfacePtr current;  // chain: the child visited last

  COSInterfacePtr nextChild() {
    if (!chain) return next < list.size() ? std::move(list[next++]) : COSInterfacePtr();
    COSInterface* c = current ? (current->getOwnerObject() == parent.get() ? current->getOlderSibling() : nullptr)
                              : parent->getNewestChild();
    current = c;
    return current;
  }
};

class Walk {
 public:
  Walk(search::Query& query, std::vector<COSInterfacePtr>& found)
      : query_(query), found_(found), snapshotChains_(query.callsFunctions()) {}

  void from(COSInterface* start, std::unordered_set<COSInterface*>* seen) {
    visit(COSInterfacePtr(start), 0, seen);
    while (top_ > 0) {
      Frame& f = frames_[top_ - 1];
      COSInterfacePtr child = f.nextChild();
      if (!child) {
        f.parent.reset();
        f.current.reset();
        --top_;
        continue;
      }
      visit(std::move(child), f.depth, seen);  // may push a frame: `f` is not used after this
    }
  }

 private:
  void visit(COSInterfacePtr object, double depth, std::unordered_set<COSInterface*>* seen) {
    if (!searchable(object.get())) return;
    if (seen && !seen->insert(object.get()).second) return;
    if (query_.matches(object.get())) found_.push_back(object);
    if (depth < query_.depth() && searchable(object.get())) push(std::move(object), depth + 1);
  }

  void push(COSInterfacePtr parent, double childDepth) {
    if (top_ == frames_.size()) frames_.emplace_back();
    Frame& f = frames_[top_++];
    COSClass* cls = parent->getClass();
    COSClassInfo* info = cls ? cls->getClassInfo() : nullptr;
    const bool ownList = info && info->usesCustomChildrenList();
    f.chain = !ownList && !snapshotChains_;
    f.depth = childDepth;
    f.next = 0;
    f.current.reset();
    if (!f.chain) {
      f.list.clear();
      if (ownList)
        info->getChildrenOfInstance(parent.get(), f.list);  // newest first
      else
        for (COSInterface* c = parent->getNewestChild(); c; c = c->getOlderSibling()) f.list.emplace_back(c);
    }
    f.parent = std::move(parent);
  }

  search::Query& query_;
  std::vector<COSInterfacePtr>& found_;
  const bool snapshotChains_;
  std::vector<Frame> frames_;
  std::size_t top_ = 0;
};

}  // namespace

vxArray* findobj(const vxArray* handles, int nargs, const vxArray* const args[]) {
  if (!omIsVCOS(handles)) throw foundation::core::except::Error("VANTEL:vcos:findobj:NotHandles");
  search::Query query(nargs, args);

  std::vector<COSInterfacePtr> found;
  Walk walk(query, found);
  const std::size_t starts = vxGetNumberOfElements(handles);
  // Only several starting objects can reach one object twice.
  std::unordered_set<COSInterface*> seen;
  // A copy: the walk may run code that changes the array's elements.
  const std::vector<COSInterfacePtr> startObjects(vxGetObjectElements(handles), vxGetObjectElements(handles) + starts);
  for (const COSInterfacePtr& start : startObjects) walk.from(start.get(), starts > 1 ? &seen : nullptr);
  if (query.callsFunctions())  // a function may have deleted objects already found
    std::erase_if(found, [](const COSInterfacePtr& o) { return o->isDestroyed(); });

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
